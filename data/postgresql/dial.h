// Making a session with one of an address's hosts, and setting it up. Every wait is this program's own, so
// that a window paints and a machine that has vanished holds nobody up for longer than is said here. The
// exception is the name of a host: the system looks it up at its own pace when a base is opened, and again
// after a search that was in vain.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "data/patience.h"
#include "data/postgresql/address.h"
#include "data/postgresql/library.h"

namespace tarvik::data {

// The numeric addresses under which hosts were last reached. A name is not looked up again while a session is
// being replaced: with the network gone that can take longer than all else. Safe from any thread.
class Numbers {
 public:
  void Note(std::size_t host, const char* number);  // nullptr and "" change nothing
  std::string Of(std::size_t host);                 // "" for one that was not reached yet, or forgotten
  void Forget();

 private:
  std::mutex guard_;
  std::vector<std::string> known_;
};

// What the connections of one base share.
struct Place {
  explicit Place(std::string_view text) : address(text) {}

  Address address;
  // The base was found to take writes. It is not looked for on a standby any more: a session that was made
  // there, while another server is about to take over, would refuse the next line.
  std::atomic<bool> written_to = false;
  std::atomic<std::size_t> latest = 0;  // the host that was there last is asked first
  Numbers numbers;
};

// The first session of a base or a connection. Hosts are asked in turn, each for as long as the address says
// (connect_timeout; otherwise 5 seconds, 2 where there are several). Where a server is just starting, or a
// standby is about to take over, it waits 5 seconds for that. Throws Error for anything else, at once.
Handle DialFirst(Place& place);

// A new session for one that was lost: tried every 50 ms or so for as long as the patience lasts, whatever
// the failure; with the patience spent, one try of 100 ms. Hosts are asked by their numbers, where they are
// known. Of several hosts each is given a second, then
// two, so that one that has vanished doesn't keep the others from being asked. Nothing if there was none in
// that time, or the process was asked to end; `reason` then tells why.
Handle DialAgain(Place& place, Patience& patience, std::int64_t life, std::string& reason);

// The session's name on the server: the program's name, then its life, if it has one.
std::string SessionName(const Address& address, std::int64_t life);

// What is set in each session, in one exchange.
std::string Settings(const Address& address, std::int64_t life);

}  // namespace tarvik::data
