// Proceso: another program on the same base, run by a test: its lines are heard, orders are given to it, it
// is killed.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvik::caos {

class Proceso {
 public:
  // Runs a program with its input and output in this test's hands. Throws std::runtime_error if it can't.
  explicit Proceso(const std::vector<std::string>& orden);
  ~Proceso();  // kills it if it still runs
  Proceso(const Proceso&) = delete;
  Proceso& operator=(const Proceso&) = delete;

  // Its next line; nothing if none came in that time, or the program has ended.
  std::optional<std::string> Lee(std::chrono::milliseconds cuanto);
  void Escribe(const std::string& linea);
  void CierraEntrada();
  void Senal(int cual) const;
  [[nodiscard]] pid_t Pid() const { return pid_; }
  // SIGKILL, and every line that it had said by then.
  std::vector<std::string> Mata();
  // Waits for its end, hearing it all the while. Gives its exit code; nothing if it did not end by itself.
  std::optional<int> Termina(std::chrono::milliseconds cuanto,
                             const std::function<void(const std::string&)>& oye);

 private:
  void Recoge();

  pid_t pid_ = -1;
  int entrada_ = -1;
  int salida_ = -1;
  std::string leido_;
  bool fin_ = false;
  std::optional<int> codigo_;
};

}  // namespace tarvik::caos
