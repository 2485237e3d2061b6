// An address may hold a password in more than one place. The library splits a badly written address in the
// wrong places, and then repeats a piece of the password. So only what cannot be part of one is shown.
#include "data/postgresql/address.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>

#include "data/error.h"
#include "data/number.h"
#include "data/postgresql/library.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

struct FreeOptions {
  void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};

using Parts = std::map<std::string, std::string, std::less<>>;

[[noreturn]] void NotUnderstood() {
  throw Error("No se entiende la dirección de la base; por ejemplo, postgresql://usuario@servidor/base");
}

// What the library has understood.
Parts PartsOf(const std::string& address) {
  if (address.find('\0') != std::string::npos) {
    throw Error("La dirección de la base contiene un carácter nulo");
  }
  char* reason = nullptr;
  const std::unique_ptr<PQconninfoOption, FreeOptions> options(PQconninfoParse(address.c_str(), &reason));
  PQfreemem(reason);  // it repeats the address
  if (options == nullptr || !address.starts_with("postgresql://")) NotUnderstood();
  Parts parts;
  for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
    if (option->val != nullptr) parts[option->keyword] = option->val;
  }
  return parts;
}

std::string Take(const Parts& parts, std::string_view name) {
  const auto found = parts.find(name);
  return found == parts.end() ? std::string() : found->second;
}

std::vector<std::string> Pieces(const std::string& text) {
  std::vector<std::string> pieces;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t end = std::min(text.find(',', from), text.size());
    pieces.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return pieces;
}

bool IsPort(const std::string& text) {
  return text.size() <= 5 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool HasOneOf(std::string_view text, std::string_view signs) {
  return text.find_first_of(signs) != std::string_view::npos;
}

bool IsFolder(const std::string& host) { return host.starts_with('/'); }

std::string WithPort(const std::string& host, const std::string& port) {
  const std::string name = host.find(':') == std::string::npos ? host : "[" + host + "]";
  return port.empty() ? name : name + ":" + port;
}

std::string Joined(const std::vector<Host>& hosts, std::string Host::*part) {
  std::string text;
  for (const Host& host : hosts) text += (text.empty() && &host == &hosts.front() ? "" : ",") + host.*part;
  return text;
}

}  // namespace

Address::Address(std::string_view text) : secret_(PartsOf(std::string(text))) {
  const Parts parts = secret_;
  Split(Take(parts, "host"), Take(parts, "hostaddr"), Take(parts, "port"));
  const std::string user = Take(parts, "user");
  const std::string base = Take(parts, "dbname");
  if (HasOneOf(user, ":/") || HasOneOf(base, "@/=")) NotUnderstood();

  for (const char* name : {"password", "sslpassword", "options"}) {
    if (std::string value = Take(parts, name); !value.empty()) hidden_.push_back(std::move(value));
  }
  if (const std::string seconds = Take(parts, "connect_timeout"); !seconds.empty()) {
    const auto number = ParseNumber(seconds);
    if (!number || *number < 0 || *number > 3600) NotUnderstood();
    if (*number > 0) timeout_ = std::chrono::seconds(static_cast<long>(*number));
  }
  wanted_ = Take(parts, "target_session_attrs");
  if (wanted_.empty() && Several()) wanted_ = "read-write";
  if (std::string name = Take(parts, "application_name"); !name.empty()) application_ = std::move(name);

  std::string others;
  const auto add = [&](std::string_view name, const std::string& value) {
    if (!value.empty()) others += (others.empty() ? "?" : "&") + std::string(name) + "=" + RepairUtf8(value);
  };
  if (OverSockets()) add("host", Joined(hosts_, &Host::name));
  if (OverSockets() && Several()) add("port", Take(parts, "port"));
  add("hostaddr", Take(parts, "hostaddr"));
  for (const char* name :
       {"application_name", "connect_timeout", "service", "sslmode", "target_session_attrs"}) {
    add(name, Take(parts, name));
  }
  // Where nothing is said of hosts the library finds them by itself: a service, the environment.
  if (!Take(parts, "host").empty() || !Take(parts, "hostaddr").empty()) {
    for (const char* name : {"host", "hostaddr", "port"}) secret_.erase(name);
  }
  shown_ = "postgresql://" + (user.empty() ? "" : RepairUtf8(user) + "@") + RepairUtf8(ShownHosts()) + "/" +
           RepairUtf8(base) + others;
}

void Address::Split(const std::string& names, const std::string& numeric, const std::string& ports) {
  const auto name = Pieces(names), number = Pieces(numeric), port = Pieces(ports);
  const std::size_t count = std::max(name.size(), number.size());
  const auto at = [count](const std::vector<std::string>& pieces, std::size_t i) {
    if (pieces.size() == count) return pieces[i];
    if (pieces.size() > 1 || (!pieces[0].empty() && count == 0)) NotUnderstood();
    return pieces[0];
  };
  if (!names.empty() && !numeric.empty() && name.size() != number.size()) NotUnderstood();
  for (std::size_t i = 0; i < count; ++i) {
    Host host{at(name, i), at(number, i), at(port, i)};
    if (!IsPort(host.port)) NotUnderstood();
    if (!IsFolder(host.name) && HasOneOf(host.name, "@/?#& '\"=")) NotUnderstood();
    if (HasOneOf(host.numeric, "@/?#& '\"=")) NotUnderstood();
    hosts_.push_back(std::move(host));
  }
}

bool Address::OverSockets() const {
  return std::any_of(hosts_.begin(), hosts_.end(), [](const Host& host) { return IsFolder(host.name); });
}

std::string Address::ShownHosts() const {
  if (OverSockets()) return Several() || hosts_[0].port.empty() ? "" : ":" + hosts_[0].port;
  std::string text;
  for (const Host& host : hosts_) {
    text += (text.empty() && &host == &hosts_.front() ? "" : ",") + WithPort(host.name, host.port);
  }
  return text;
}

std::string Address::Scrubbed(std::string text) const {
  constexpr std::size_t kShort = 4;  // shorter ones are part of many words: only between quotes
  for (const std::string& hidden : hidden_) {
    const std::string sought = hidden.size() < kShort ? "\"" + hidden + "\"" : hidden;
    for (std::size_t at = text.find(sought); at != std::string::npos; at = text.find(sought, at + 3)) {
      text.replace(at, sought.size(), "***");
    }
  }
  return text;
}

}  // namespace tarvik::data
