// The address of a server's base, as the server's own tools read it: which hosts, and what of it may be
// shown. It asks no server.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvik::data {

// One of the hosts of an address; what was not given is empty and the library's own default holds.
struct Host {
  std::string name;     // or the folder of a socket
  std::string numeric;  // "hostaddr"
  std::string port;
};

class Address {
 public:
  // Throws Error, in words that repeat nothing of the text, for one that can't be understood. Likewise for
  // one where a piece of a password was taken for something else: a port that is no number, an "@" or "/" in
  // the name of a host or a base, a ":" in the name of a user.
  explicit Address(std::string_view text);

  // What it says beside its hosts, by the library's names, with the password: for the library alone.
  [[nodiscard]] const std::map<std::string, std::string, std::less<>>& Secret() const { return secret_; }
  // For the status line and for messages: composed of what may be seen.
  [[nodiscard]] const std::string& Shown() const { return shown_; }
  // At least one; with all empty where the library finds it by itself (a service, the environment).
  [[nodiscard]] const std::vector<Host>& Hosts() const { return hosts_; }
  [[nodiscard]] bool Several() const { return hosts_.size() > 1; }
  // "target_session_attrs"; of several hosts the one that takes writes is meant if nothing else is said.
  [[nodiscard]] const std::string& Wanted() const { return wanted_; }
  // "connect_timeout"; nothing if the address doesn't say.
  [[nodiscard]] std::optional<std::chrono::seconds> Timeout() const { return timeout_; }
  [[nodiscard]] const std::string& Application() const { return application_; }

  // A text of the server's or the library's, without passwords.
  [[nodiscard]] std::string Scrubbed(std::string text) const;

 private:
  void Split(const std::string& names, const std::string& numeric, const std::string& ports);
  [[nodiscard]] std::string ShownHosts() const;  // those before the base's name
  [[nodiscard]] bool OverSockets() const;

  std::map<std::string, std::string, std::less<>> secret_;
  std::string shown_;
  std::vector<Host> hosts_;
  std::string wanted_;
  std::optional<std::chrono::seconds> timeout_;
  std::string application_ = "tarvik";
  std::vector<std::string> hidden_;
};

}  // namespace tarvik::data
