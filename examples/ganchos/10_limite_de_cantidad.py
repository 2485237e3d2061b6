"""Refuses a goods-in line whose quantity is over the shop's limit. It looks at nothing else.

The limit is the setting CantidadMaxima; without it, or with 0, every quantity passes."""

CANTIDAD = 5  # txtFields


def _numero(texto):
    try:
        return float(texto.replace(",", "") or 0)
    except ValueError:
        return 0.0  # the screen itself refuses what is no number


def ENTRADA005(forma, ambiente):
    maximo = _numero(str(ambiente.Parametros["CantidadMaxima"] or 0))
    cantidad = _numero(forma.txtFields[CANTIDAD].Text)
    if maximo <= 0 or cantidad <= maximo:
        return
    # The flag keeps the line from being stored; the exception's text is what the operator reads.
    forma.CancelaProceso = True
    raise ValueError(f"La cantidad {cantidad:,.10g} pasa del máximo de {maximo:,.10g}. El renglón no se guardó; "
                     "captúrelo de nuevo con otra cantidad.")
