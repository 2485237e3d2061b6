// ListExport: a list on its way into a file, beside the window's thread, and the place in the line of keys
// where its progress stands instead of the sums.
#pragma once

#include <QElapsedTimer>
#include <QStackedWidget>
#include <memory>

#include "desktop/reading/reader.h"
#include "host/listado_csv.h"

class QLabel;
class QProgressBar;

namespace tarvik::desktop {

class ListExport final : public QStackedWidget {
  Q_OBJECT

 public:
  // `sums` stands here as long as there is nothing else to say.
  ListExport(Reader& reader, QWidget* sums);
  ~ListExport() override;

  // `expected`: rows, as far as they are known; 0: not known.
  void Start(std::shared_ptr<host::ListadoEnCsv> file, const QString& path, std::int64_t expected);
  [[nodiscard]] bool UnderWay() const { return task_ != nullptr; }
  void Cancel();  // a file that is being written at this moment is whole all the same
  // A line in the sums' place, until the next key.
  void Say(const QString& words);
  [[nodiscard]] QString Said() const;
  void Quiet();

 private:
  void ShowProgress(std::int64_t rows);

  Reader& reader_;
  Reader::TaskRef task_;
  QProgressBar* bar_;
  QLabel* words_;
  std::int64_t expected_ = 0;
  QElapsedTimer clock_;
};

}  // namespace tarvik::desktop
