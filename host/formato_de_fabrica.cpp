// The page that a document is printed on where a base's folder has no template of its own.
#include "host/formato.h"

namespace tarvik::host {

std::string_view PlantillaDeFabrica() {
  // Laid out by tables: the simplest viewers and printers keep them in place.
  return R"HTML(<!DOCTYPE html>
<html lang="es">
<head>
<meta charset="utf-8">
<title>{{titulo}} Núm. {{numero}}</title>
<style>
@page { margin: 14mm 13mm 16mm 13mm; }
@media print { body { margin: 0; } .hoja { max-width: none; } }
body { margin: 24px; color: #1c2430; background: #ffffff;
       font-family: Inter, "Helvetica Neue", Arial, sans-serif; font-size: 10pt; line-height: 1.35; }
.hoja { max-width: 190mm; margin: 0 auto; }
table { width: 100%; border-collapse: collapse; }
td, th { vertical-align: top; text-align: left; }
.logo { max-width: 100%; }
.empresa { font-size: 15pt; font-weight: 700; }
.titulo { font-size: 11pt; color: #4a5668; }
.identidad { text-align: right; }
.numero { font-size: 19pt; font-weight: 700; font-variant-numeric: tabular-nums; }
.estado { font-size: 9pt; font-weight: 700; color: #1f6b4a; }
.pendiente { color: #9a5b00; }
.barras { width: 44mm; height: 11mm; }
.cifras { font-size: 8pt; letter-spacing: .2em; font-variant-numeric: tabular-nums; }
.datos { margin-top: 18px; }
.datos td { padding: 5px 14px 5px 0; border-bottom: 1px solid #c3cad4; }
.datos .primera td { border-top: 2px solid #1c2430; }
.datos .marca { padding-top: 8px; white-space: nowrap; }
.rotulo { font-size: 7.5pt; color: #5d6878; text-transform: uppercase; letter-spacing: .04em; }
.partidas { margin-top: 18px; font-size: 9pt; }
.partidas thead { display: table-header-group; }
.partidas tr { page-break-inside: avoid; break-inside: avoid; }
.partidas th { padding: 5px 7px; font-size: 8pt; color: #ffffff; background: #2b3a4f;
               -webkit-print-color-adjust: exact; print-color-adjust: exact; }
.partidas td { padding: 3px 7px; border-bottom: 1px solid #dfe4ea; }
.cifra { text-align: right; white-space: nowrap; font-variant-numeric: tabular-nums; }
.partidas th.cifra { text-align: right; }
.detalle { font-size: 8pt; color: #5d6878; }
.clave { white-space: nowrap; }
.cierre { margin-top: 14px; page-break-inside: avoid; break-inside: avoid; }
.cierre td { padding: 3px 7px; }
.cierre .suma { white-space: nowrap; }
.cierre .total { border-top: 2px solid #1c2430; font-size: 13pt; font-weight: 700; white-space: nowrap; }
.cierre .observaciones { padding: 3px 28px 3px 0; }
.nota { white-space: pre-line; }
.cierre .firmas { padding: 64px 0 0 0; }
.firmas .firma { border-top: 1px solid #1c2430; padding: 6px 0 0 0; text-align: center; font-size: 8.5pt;
                 color: #5d6878; }
.cierre .pie { padding: 20px 0 0 0; font-size: 7.5pt; color: #5d6878; }
</style>
<style>
@page { @bottom-left { content: "Núm. {{numero}}"; font: 8pt sans-serif; color: #5d6878; }
        @bottom-right { content: "Página " counter(page) " de " counter(pages); font: 8pt sans-serif; color: #5d6878; } }
</style>
</head>
<body>
<div class="hoja">

<table class="cabeza" width="100%" cellspacing="0">
<tr>
<td>
{{#logo}}<div><img class="logo" src="{{{logo}}}"{{#logo_ancho}} width="{{logo_ancho}}"{{/logo_ancho}} height="{{logo_alto}}" alt=""></div>{{/logo}}
<div class="empresa">{{empresa}}</div>
<div class="titulo">{{titulo}}</div>
</td>
<td class="identidad" align="right" width="40%">
<div class="numero" align="right">Núm. {{numero}}</div>
<div align="right" class="estado{{#pendiente}} pendiente{{/pendiente}}">{{estado}}{{#folio}} · {{#folio_estacion}}{{folio_estacion}} · {{/folio_estacion}}Folio {{folio}}{{/folio}}</div>
<div align="right">{{{barras}}}</div>
<div class="cifras" align="right">{{numero}}</div>
</td>
</tr>
</table>

<table class="datos" width="100%" cellspacing="0">
<tr class="primera">
<td width="24%"><div class="rotulo">Fecha</div><div>{{fecha}}</div></td>
<td width="40%"><div class="rotulo">Concepto</div><div>{{concepto}} {{concepto_nombre}}</div></td>
<td width="36%"><div class="rotulo">Almacén</div><div>{{almacen}} {{almacen_nombre}}</div></td>
</tr>
{{#cliente}}
<tr>
<td class="marca"><div class="rotulo">Cliente</div></td>
<td colspan="2"><div>{{cliente}} {{cliente_nombre}}</div></td>
</tr>
{{/cliente}}
{{#direccion}}
<tr>
<td class="marca"><div class="rotulo">Dirección de embarque</div></td>
<td colspan="2"><div>{{direccion}}</div></td>
</tr>
{{/direccion}}
{{#traspaso_almacen}}
<tr>
<td class="marca"><div class="rotulo">Traspaso al almacén</div></td>
<td colspan="2"><div>{{traspaso_almacen}} {{traspaso_nombre}}{{#traspaso_numero}} (traspaso {{traspaso_numero}}){{/traspaso_numero}}</div></td>
</tr>
{{/traspaso_almacen}}
{{#estacion_destino}}
<tr>
<td class="marca"><div class="rotulo">Traspaso a estación</div></td>
<td colspan="2"><div>{{estacion_destino}} {{estacion_nombre}}</div></td>
</tr>
{{/estacion_destino}}
{{#sucursal}}
<tr>
<td class="marca"><div class="rotulo">Sucursal</div></td>
<td colspan="2"><div>{{sucursal}} {{sucursal_nombre}}{{#entrada_remota}} (entrada remota {{entrada_remota}}){{/entrada_remota}}</div></td>
</tr>
{{/sucursal}}
{{#empleado}}
<tr>
<td class="marca"><div class="rotulo">Asignado al empleado</div></td>
<td colspan="2"><div>{{empleado}} {{empleado_nombre}}{{#fecha_retorno}}, retorno el {{fecha_retorno}}{{/fecha_retorno}}</div></td>
</tr>
{{/empleado}}
</table>

<table class="partidas" width="100%" cellspacing="0">
<thead>
<tr>
<th width="6%">#</th>
<th width="14%">Artículo</th>
<th width="36%">Descripción</th>
<th width="11%" class="cifra" align="right">Cantidad</th>
<th width="9%">Unidad</th>
<th width="11%" class="cifra" align="right">Precio</th>
<th width="13%" class="cifra" align="right">Importe</th>
</tr>
</thead>
<tbody>
{{#partidas}}
<tr>
<td class="clave">{{renglon}}</td>
<td class="clave">{{articulo}}</td>
<td>{{descripcion}}{{#presentacion}}<div class="detalle">{{presentacion}}{{#clave_adicional}} · {{clave_adicional}}{{/clave_adicional}}</div>{{/presentacion}}</td>
<td class="cifra" align="right">{{cantidad}}</td>
<td>{{unidad}}</td>
<td class="cifra" align="right">{{precio}}</td>
<td class="cifra" align="right">{{importe}}</td>
</tr>
{{/partidas}}
</tbody>
</table>

<table class="cierre" width="100%" cellspacing="0">
<tr>
<td width="58%" rowspan="3" class="observaciones">{{#observaciones}}<div class="rotulo">Observaciones</div><div class="nota">{{observaciones}}</div>{{/observaciones}}</td>
<td width="18%" class="suma">Renglones</td>
<td width="24%" class="cifra" align="right">{{renglones}}</td>
</tr>
<tr><td class="suma">Unidades</td><td class="cifra" align="right">{{unidades}}</td></tr>
<tr><td class="total">Total {{moneda}}</td><td class="cifra total" align="right">{{total}}</td></tr>
<tr>
<td colspan="3" class="firmas">
<table width="100%" cellspacing="0">
<tr>
<td width="29%" align="center" class="firma">Entregó</td>
<td width="6%"></td>
<td width="30%" align="center" class="firma">Recibió</td>
<td width="6%"></td>
<td width="29%" align="center" class="firma">Autorizó</td>
</tr>
</table>
</td>
</tr>
<tr><td colspan="3" class="pie">Elaboró {{usuario}}. Impreso el {{impreso}}.</td></tr>
</table>
</div>
</body>
</html>
)HTML";
}

}  // namespace tarvik::host
