// Renglones: a new goods-in with its concept, ready for lines.
#pragma once

#include "goods_in/columnas.h"
#include "tests/support/escenario.h"

namespace tarvik::tests {

class Renglones : public Escenario {
 protected:
  using Textos = std::vector<std::string>;

  Renglones() { Catalogo(); }

  frmEntradasWizard& ConConcepto() {
    frmEntradasWizard& f = Nueva();
    Teclea(f, f.txtFields(campo::Concepto), "COM");
    Tecla(f, "Enter");
    return f;
  }
  // What the module sent, without the question whether a key is a model's.
  Textos Sentencias() const {
    Textos textos = bitacora.sentencias;
    std::erase_if(textos, [](const std::string& t) { return t.find("modelo<>''") != std::string::npos; });
    return textos;
  }
  void Usa(frmEntradasWizard& f, int hasta) {
    for (int renglon = 1; renglon <= hasta; ++renglon) {
      f.fg2.TextMatrix(renglon, columna_entrada::Articulo, "X");
      f.fg2.TextMatrix(renglon, columna_entrada::Cantidad, "1");
      f.fg2.TextMatrix(renglon, columna_entrada::Precio, "1");
    }
  }
  void RenglonVacio(frmEntradasWizard& f) {
    for (int campo : {1, 4, 5, 6, 9, 24, 25, 26, 27, 28, 29})
      EXPECT_EQ(f.txtFields(campo).Text(), "") << campo;
    EXPECT_EQ(f.RichTextBox1.Text(), "");
  }
};

}  // namespace tarvik::tests
