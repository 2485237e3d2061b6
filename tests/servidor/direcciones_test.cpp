// Addresses of a server's base: several hosts, and no password in anything that is shown, however badly the
// address is written.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "data/engine.h"
#include "data/error.h"
#include "tests/data/support.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::data {
namespace {

using tests::BaseDePrueba;
using tests::ErrorOf;

// All that a failing address can show.
std::string AllOf(const std::string& address) {
  try {
    return OpenBase(address)->Address();
  } catch (const Error& error) {
    std::string all = error.what();
    for (const auto& [name, value] : error.Context()) all += " " + name + " " + value;
    return all;
  }
}

void ShowsNothing(const std::string& address) {
  const std::string all = AllOf(address);
  EXPECT_FALSE(all.empty());
  for (const char* piece : {"zorro", "abeja"}) {
    EXPECT_EQ(all.find(piece), std::string::npos) << address << "\n" << all;
  }
}

TEST(Direcciones, NoPieceOfAPasswordIsShownWhateverSignStandsInIt) {
  std::vector<std::string> signs = {"",   ":",   "/",   "?",   "#",      "@",    "%",   "&",  "=",
                                    "[",  "]",   " ",   ",",   ";",      "'",    "\"",  "\\", "+",
                                    "!",  "%zz", "%40", "%3A", "%2F",    "%25",  "%00", "ñ",  "~",
                                    "::", "//",  "@@",  "?&",  "&port=", "host="};
  for (const std::string& sign : signs) {
    const std::string secret = "zorro" + sign + "abeja";
    for (const char* rest : {"127.0.0.1:1/x", "127.0.0.1:1,127.0.0.2:1/x", "/x?host=/no/hay", "127.0.0.1:1",
                             "[::1]:1/x", "127.0.0.1:1/x?application_name=caja"}) {
      ShowsNothing("postgresql://ana:" + secret + "@" + rest);
    }
    for (const char* front :
         {"postgresql://ana@127.0.0.1:1/x?password=", "postgresql://127.0.0.1:1/x?user=ana&password=",
          "postgresql:///x?host=/no/hay,/tampoco&port=1&password=",
          "postgresql://ana@127.0.0.1:1/x?passw%6Frd=", "postgresql://ana@127.0.0.1:1/x?sslpassword=",
          "postgresql://ana@127.0.0.1:1/x?options=-c%20x.clave%3D"}) {
      // Behind an "&" an address goes on with the next of its parts: nobody can tell that it was meant
      // otherwise where that is a good one.
      if (sign == "&port=") continue;
      ShowsNothing(front + secret);
      ShowsNothing(front + secret + "&connect_timeout=1");
    }
    // Without its host: the library takes the password for a port. With an "@" in it its end is a host's
    // name, and a good one.
    if (sign.find('@') != std::string::npos) continue;
    for (const char* rest : {"", "/x", ":5432/x", "/x?sslmode=disable", ",127.0.0.1:1/x"}) {
      ShowsNothing("postgresql://ana:" + secret + rest);
    }
    ShowsNothing("postgresql://ana%3A" + secret + "@127.0.0.1:1/x");
    ShowsNothing("postgresql:ana:" + secret);
    ShowsNothing("postgresql:password=" + secret);
    ShowsNothing("postgresql:/ana:" + secret + "@127.0.0.1/x");
  }
}

TEST(Direcciones, WhatIsNoneIsNotUnderstood) {
  for (const char* address :
       {"postgresql:", "postgresql:/", "postgresql://[::1", "postgresql://h:puerto/x",
        "postgresql://h:123456/x", "postgresql://h:-1/x", "postgresql://h1,h2:x/x",
        "postgresql://h1,h2/x?port=1,2,3", "postgresql://h1/x?hostaddr=127.0.0.1,127.0.0.2",
        "postgresql://h/x?nada=1", "postgresql://h/x?connect_timeout=pronto", "postgresql://a:b@c@d/x",
        "postgresql://a:b@c/x/y"}) {
    EXPECT_EQ(ErrorOf([&] { OpenBase(address); }),
              "No se entiende la dirección de la base; por ejemplo, postgresql://usuario@servidor/base")
        << address;
  }
}

// --- Several hosts ---

class Hosts : public testing::Test {
 protected:
  BaseDePrueba base_{BaseDePrueba::Con::kNada};
  // Of "postgresql://tarvik@PORT/NAME?host=SOCKET".
  std::string name = Between("/tarvik_", "?").insert(0, "tarvik_");
  std::string socket = base_.Direccion().substr(base_.Direccion().find("host=") + 5);

  [[nodiscard]] std::string Between(const std::string& front, const std::string& end) const {
    const std::size_t from = base_.Direccion().find(front, 14) + front.size();
    return base_.Direccion().substr(from, base_.Direccion().find(end, from) - from);
  }
};

TEST_F(Hosts, TheOneThatIsThereIsTaken) {
  for (const std::string& hosts : {"/no/hay," + socket, socket + ",/no/hay", "/no/hay,/tampoco," + socket}) {
    const std::string address = "postgresql://tarvik@/" + name + "?host=" + hosts;
    const auto base = OpenBase(address);
    EXPECT_EQ(base->Address(), address);
    EXPECT_EQ(base->Connect()->Run("SELECT ?::bigint", {7}).rows.at(0).at(0), Value(7));
  }
}

TEST_F(Hosts, EachHasItsOwnPortAndNumber) {
  const std::string address =
      "postgresql://tarvik@127.0.0.1:1,servidor.prueba/" + name + "?hostaddr=,127.0.0.2&connect_timeout=2";
  const std::string error = ErrorOf([&] { OpenBase(address); });
  EXPECT_TRUE(error.starts_with("No se puede abrir la base " + address + ": ")) << error;
  EXPECT_NE(error.find("port 1 failed"), std::string::npos) << error;
  EXPECT_NE(error.find("\"127.0.0.2\", port 5432 failed"), std::string::npos) << error;
}

TEST_F(Hosts, OfNoneEachReasonIsTold) {
  const std::string error =
      ErrorOf([&] { OpenBase("postgresql://ana@127.0.0.1:1,127.0.0.2:2/x?connect_timeout=2"); });
  EXPECT_TRUE(error.starts_with(
      "No se puede abrir la base postgresql://ana@127.0.0.1:1,127.0.0.2:2/x?connect_timeout=2: "))
      << error;
  EXPECT_NE(error.find("127.0.0.1"), std::string::npos);
  EXPECT_NE(error.find("127.0.0.2\", port 2"), std::string::npos) << error;
}

TEST_F(Hosts, OneThatTakesNoWritesIsPassedOver) {
  const auto db = OpenBase(base_.Direccion())->Connect();
  db->Execute("ALTER DATABASE " + name + " SET default_transaction_read_only = on");
  // One host is taken as it is; of several one is looked for, for a while.
  EXPECT_EQ(ErrorOf([&] { OpenBase(base_.Direccion()); }), "no error");
  const auto begun = std::chrono::steady_clock::now();
  const std::string error =
      ErrorOf([&] { OpenBase("postgresql://tarvik@/" + name + "?host=/no/hay," + socket); });
  EXPECT_NE(error.find("read-only"), std::string::npos) << error;
  EXPECT_GT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(4));
  EXPECT_EQ(ErrorOf([&] {
              OpenBase("postgresql://tarvik@/" + name + "?target_session_attrs=any&host=/no/hay," + socket);
            }),
            "no error");
}

TEST_F(Hosts, ASessionThatCantBeMadeAnewIsToldWithoutThePassword) {
  std::string address = base_.Direccion();
  address.replace(address.find("tarvik@"), 7, "tarvik:zorro%40abeja@");
  const auto base = OpenBase(address);
  const auto db = base->Connect();
  const auto other = OpenBase("postgresql://tarvik@/postgres?host=" + socket)->Connect();
  other->Execute("ALTER DATABASE " + name + " ALLOW_CONNECTIONS false");
  other->Run("SELECT pg_terminate_backend(pid, 2000) FROM pg_stat_activity WHERE datname = ?", {name});
  db->Waiting().ActBegins();
  const auto begun = std::chrono::steady_clock::now();
  for (int i = 0; i < 10; ++i) {
    try {
      db->Run("UPDATE x SET y = ?", {1});
      FAIL();
    } catch (const Error& error) {
      EXPECT_EQ(error.Kind(), Trouble::kAway);
      const std::string text = error.what();
      EXPECT_TRUE(text.starts_with("No hay conexión con la base " + base->Address() + ": ")) << text;
      EXPECT_EQ(text.find("zorro"), std::string::npos) << text;
      EXPECT_EQ(text.find("abeja"), std::string::npos) << text;
    }
  }
  const auto took = std::chrono::steady_clock::now() - begun;
  EXPECT_GT(took, std::chrono::milliseconds(4900));
  EXPECT_LT(took, std::chrono::milliseconds(7000));
  other->Execute("ALTER DATABASE " + name + " ALLOW_CONNECTIONS true");
  EXPECT_EQ(ErrorOf([&] { db->Execute("SELECT 1"); }), "no error");
}

}  // namespace
}  // namespace tarvik::data
