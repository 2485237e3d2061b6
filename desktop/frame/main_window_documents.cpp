// What the operator asks of documents, all of it through the door and the host; and how the host's list form
// is kept in step with the list on show.
#include "desktop/frame/main_window.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "desktop/frame/recovery.h"
#include "desktop/frame/requests.h"
#include "desktop/lists/document_list.h"
#include "desktop/reading/half_posted.h"
#include "desktop/screens/screen_view.h"
#include "host/anfitrion.h"
#include "service/door/entradas_salidas.h"

namespace tarvik::desktop {

void MainWindow::New(bool goods_in) {
  SyncParent();
  if (goods_in) {
    door_.NuevaEntrada();
  } else {
    door_.NuevaSalida();
  }
}

void MainWindow::Transfer() {
  Try(QStringLiteral("No se pudo abrir el traspaso de estación"),
      [this] { door_.movimientoEstacion(0, false); });
}

// Transfers belong to the deployment: there is no list of them, and the operator opens one by its number.
void MainWindow::OpenTransfer() {
  bool chosen = false;
  const int number = QInputDialog::getInt(this, QStringLiteral("Traspaso de estación"),
                                          QStringLiteral("Número del traspaso"), 1, 1,
                                          std::numeric_limits<int>::max(), 1, &chosen);
  if (!chosen) return;
  Try(QStringLiteral("No se pudo abrir el traspaso de estación"),
      [this, number] { door_.movimientoEstacion(number, false); });
}

void MainWindow::OpenDocument(DocumentList& list, int number, bool read_only) {
  if (number == 0) return;
  if (!read_only) return OpenForChange({TypeOf(list.Kind()), number});
  SyncParent();
  if (IsGoodsIn(list.Kind())) return door_.ConsultaEntrada(number);
  door_.ConsultaSalida(number);
}

void MainWindow::OpenForChange(const host::Retenido& document) {
  SyncParent();
  Try(QStringLiteral("No se pudo abrir el documento"),
      [&] { office_.host.Abre(document.tipo, document.numero); });
}

void MainWindow::DeleteDocument(DocumentList& list, int number) {
  if (number == 0) return;
  SyncParent();
  auto& parent = office_.host.Parent();
  bool goes_on = false;
  Try(QStringLiteral("No se pudo eliminar el documento"), [&] {
    const std::string warning = office_.host.AvisoDeEliminacion(TypeOf(list.Kind()), number);
    goes_on =
        warning.empty() || office_.host.Plataforma().ShowBox(
                               forms::BoxKind::Question, warning + "\n\n¿Desea eliminarla de todos modos?",
                               forms::kBoxYesNo + forms::kBoxQuestion + forms::kBoxSecondDefault);
  });
  if (!goes_on) return;
  if (IsGoodsIn(list.Kind())) {
    door_.EliminaEntrada(number);
  } else {
    door_.EliminaSalida(number);
  }
  const auto& rows = parent.elementos;
  if (std::find(rows.begin(), rows.end(), data::Value(number)) == rows.end()) {
    list.Model().RemoveKey(number);
    UpdateCounts();
  } else {
    list.Refresh();  // it may have been deleted elsewhere, or be held
  }
  SyncParent();
}

bool MainWindow::RaiseOwn(const host::Retenido& document) {
  for (const Screen& screen : screens_) {
    if (host::RetenidoPor(screen.view->Screen()) != document) continue;
    Raise(*screen.view);
    return true;
  }
  return false;
}

void MainWindow::Release(DocumentList& list, int number) {
  if (number == 0) return;
  const host::Retenido document{TypeOf(list.Kind()), number};
  if (RaiseOwn(document)) return;
  Try(QStringLiteral("No se pudo liberar el documento"), [&] {
    std::string who;
    for (const host::Tenencia& holder : host::LeeTenencias(office_.host.Conexion(), document)) {
      who += " La tiene " + holder.usuario +
             (holder.estacion.empty() ? "" : " en la estación " + holder.estacion) +
             (holder.viva ? "; su programa sigue abierto." : "; su programa ya no está abierto.");
    }
    const std::string text = "¿Desea liberar " + host::LaDe(document) + "?" + who +
                             " Quien la tenga en pantalla ya no podrá modificarla.";
    if (!office_.host.Plataforma().ShowBox(
            forms::BoxKind::Question, text,
            forms::kBoxYesNo + forms::kBoxQuestion + forms::kBoxSecondDefault)) {
      return;
    }
    const auto motive = ask_text(QStringLiteral("Liberar documento"), QStringLiteral("Motivo"));
    if (motive) office_.host.Libera(document.tipo, document.numero, motive->toStdString());
  });
  list.Refresh(number);
}

void MainWindow::AskFor(DocumentList& list, int number) {
  if (number == 0) return;
  const host::Retenido document{TypeOf(list.Kind()), number};
  if (RaiseOwn(document)) return;
  const auto message =
      ask_text(QStringLiteral("Pedir documento"), QStringLiteral("Mensaje para quien lo tiene"));
  if (!message) return;
  Try(QStringLiteral("No se pudo pedir el documento"), [&] {
    requests_->Ask(document, *message);
    statusBar()->showMessage(QStringLiteral("Se pidió %1").arg(QString::fromStdString(host::LaDe(document))));
  });
}

// The band above the screens with other stations' requests, and the answers to this program's own.
void MainWindow::MakeRequests(QBoxLayout& column) {
  requests_ = new Requests(office_.host, this);
  column.addWidget(requests_);
  connect(requests_, &Requests::Granted, this,
          [this](const host::Retenido& document) { OpenForChange(document); });
  connect(requests_, &Requests::Refused, this, [this](const QString& text) {
    office_.host.Plataforma().ShowBox(forms::BoxKind::Message, text.toStdString(), forms::kBoxInformation);
  });
  connect(requests_, &Requests::Failed, this, [this](const QString& reason) {
    office_.host.Plataforma().ShowBox(forms::BoxKind::Error, reason.toStdString(), forms::kBoxStop);
  });
  ask_text = [this](const QString& title, const QString& label) -> std::optional<QString> {
    bool accepted = false;
    const QString text = QInputDialog::getText(this, title, label, QLineEdit::Normal, {}, &accepted);
    return accepted ? std::optional(text) : std::nullopt;
  };
}

void MainWindow::Try(const QString& what, const std::function<void()>& act) {
  try {
    act();
  } catch (const std::exception& error) {
    const QString text =
        QStringLiteral("%1: %2. No se cambió ningún documento. Corrija la causa e inténtelo de nuevo.")
            .arg(what, QString::fromUtf8(error.what()));
    office_.host.Plataforma().ShowBox(forms::BoxKind::Error, text.toStdString(), forms::kBoxStop);
  }
}

// The one in the screen on show, or the chosen one of the list.
void MainWindow::CompleteDocument() {
  if (const auto* view = qobject_cast<ScreenView*>(stack_->currentWidget())) {
    if (const auto document = host::DocumentoDe(view->Screen())) recovery_->Complete(KeyOf(*document));
  } else if (const auto* list = ListOnShow(); list && list->SelectedHalf()) {
    recovery_->Complete({TypeOf(list->Kind()), list->Selected()});
  }
}

// ---- the host's list form ----

void MainWindow::SyncParent() {
  auto& parent = office_.host.Parent();
  const auto* list = ListOnShow();
  parent.elementos.clear();
  parent.seleccionado = 0;
  parent.catalogo_activo = list != nullptr ? std::string(NameOf(list->Kind())) : "";
  if (list == nullptr) return;
  for (const auto key : list->Model().Keys()) parent.elementos.emplace_back(key);
  parent.seleccionado = list->SelectedRow() + 1;
}

void MainWindow::OnParentCall(std::string_view name, const std::vector<data::Value>& arguments) {
  const int number = arguments.empty() ? 0 : static_cast<int>(data::ToNumber(arguments.front()));
  for (const ListKind kind : kAllLists) {
    if (name != "Llena" + std::string(NameOf(kind))) continue;
    List(kind).Refresh(number);
    UpdateCounts();
    return;
  }
  if (name == "SetFocus") {
    tabs_->setCurrentIndex(0);
    if (isVisible()) activateWindow();
    return;
  }
  UpdateActions();
}

}  // namespace tarvik::desktop
