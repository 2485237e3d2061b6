// The server's C library, with what it hands out owned by somebody. Only this folder includes it.
#pragma once

#include <libpq-fe.h>

#include <memory>

namespace tarvik::data {

struct FinishSession {
  void operator()(PGconn* session) const { PQfinish(session); }
};
using Handle = std::unique_ptr<PGconn, FinishSession>;

struct ClearResult {
  void operator()(PGresult* result) const { PQclear(result); }
};
using Result = std::unique_ptr<PGresult, ClearResult>;

}  // namespace tarvik::data
