// Encrypted sessions with a server whose name is verified, and passwords. Runs by con_tls.sh alone.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "data/engine.h"
#include "data/error.h"
#include "data/postgresql/dial.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

using tests::ErrorOf;

class Tls : public testing::Test {
 protected:
  static std::string Given(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "(con_tls.sh)";
  }
  // With another name, authority or user.
  [[nodiscard]] std::string Address(const std::string& host = "servidor.prueba",
                                    const std::string& authority = "authority.crt",
                                    const std::string& user = "tarvik",
                                    const std::string& mode = "verify-full") const {
    return "postgresql://" + user + "@" + host + ":" + port + "/postgres?hostaddr=127.0.0.1&sslmode=" + mode +
           "&sslrootcert=" + keys + "/" + authority;
  }
  std::string keys = Given("TARVIK_TLS");
  std::string port = Given("TARVIK_TLS_PUERTO");
};

TEST_F(Tls, AServerThatIsWhoItSaysIsOpened) {
  const auto base = OpenBase(Address());
  const auto db = base->Connect();
  EXPECT_EQ(db->Select("SELECT ssl FROM pg_stat_ssl WHERE pid = pg_backend_pid()").rows.at(0).at(0),
            Value(1));
  EXPECT_EQ(base->Address(), "postgresql://tarvik@servidor.prueba:" + port +
                                 "/postgres?hostaddr=127.0.0.1&sslmode=verify-full");
  // A session that ends is made anew the same way, and a long answer comes whole.
  base->Connect()->Run(
      "SELECT pg_terminate_backend(pid, 2000) FROM pg_stat_activity WHERE datname = current_database() AND "
      "pid "
      "<> pg_backend_pid()",
      {});
  EXPECT_EQ(db->Select("SELECT ssl FROM pg_stat_ssl WHERE pid = pg_backend_pid()").rows.at(0).at(0),
            Value(1));
  EXPECT_EQ(db->Select("SELECT repeat('x', 1000) AS x FROM generate_series(1, 20000)").rows.size(), 20000U);
  const Fence fence(*db, std::chrono::milliseconds(300));
  EXPECT_EQ(
      ErrorOf([&] { db->Select("SELECT COUNT(*) FROM pg_class a, pg_class b, pg_class c, pg_class d"); }),
      "La consulta tardó más de 0.3 segundos y se detuvo");
}

TEST_F(Tls, OneOfAnotherNameIsRefused) {
  const std::string error = ErrorOf([&] { OpenBase(Address("otro.prueba")); });
  EXPECT_TRUE(error.starts_with("No se puede abrir la base postgresql://tarvik@otro.prueba:" + port +
                                "/postgres?hostaddr=127.0.0.1&sslmode=verify-full: El certificado del "
                                "servidor es de otro nombre: "))
      << error;
}

TEST_F(Tls, SoIsOneOfAnUnknownAuthorityOrOfNone) {
  std::string error = ErrorOf([&] { OpenBase(Address("servidor.prueba", "other.crt")); });
  EXPECT_NE(error.find(": El certificado del servidor no es de una autoridad conocida: "), std::string::npos)
      << error;
  error = ErrorOf([&] { OpenBase(Address("servidor.prueba", "missing.crt")); });
  EXPECT_NE(error.find(": Falta el archivo de la autoridad que certifica al servidor (sslrootcert): "),
            std::string::npos)
      << error;
}

TEST_F(Tls, AServerThatTakesNoneInTheOpenSaysSo) {
  const std::string error =
      ErrorOf([&] { OpenBase(Address("servidor.prueba", "authority.crt", "tarvik", "disable")); });
  EXPECT_NE(error.find(": No hay permiso para usar la base: "), std::string::npos) << error;
}

// With the network gone a name's look-up can take longer than all else.
TEST_F(Tls, ASessionIsMadeAnewByTheNumberThatTheNameHadAndByTheNameAgainOnceThatWasInVain) {
  Place place("postgresql://tarvik@localhost:" + port + "/postgres?sslmode=require");
  EXPECT_EQ(place.numbers.Of(0), "");
  ASSERT_NE(DialFirst(place), nullptr);
  const std::string number = place.numbers.Of(0);
  EXPECT_TRUE(number == "127.0.0.1" || number == "::1") << number;

  const auto again = [&](std::chrono::milliseconds left) {
    Patience patience;
    patience.Waited(Patience::kWhole - left);
    std::string reason;
    const bool made = DialAgain(place, patience, 0, reason) != nullptr;
    return made ? "made" : reason;
  };
  EXPECT_EQ(again(std::chrono::milliseconds(2000)), "made");
  place.numbers.Note(0, "127.0.0.2");  // it has moved: nobody is there any more
  const std::string reason = again(std::chrono::milliseconds(400));
  EXPECT_NE(reason.find("127.0.0.2"), std::string::npos) << reason;
  EXPECT_EQ(place.numbers.Of(0), "");
  EXPECT_EQ(again(std::chrono::milliseconds(2000)), "made") << "by its name";
  EXPECT_EQ(place.numbers.Of(0), number);
}

TEST_F(Tls, APasswordOpensAndIsShownNowhere) {
  const auto owner = OpenBase(Address())->Connect();
  owner->Execute("DROP ROLE IF EXISTS ana");
  owner->Execute("CREATE ROLE ana LOGIN PASSWORD 'lo%que@sea:1/2'");
  const auto base = OpenBase(Address("servidor.prueba", "authority.crt", "ana:lo%25que%40sea:1%2F2"));
  EXPECT_EQ(base->Address().find("que"), std::string::npos) << base->Address();
  const auto db = base->Connect();
  EXPECT_EQ(ToText(db->Select("SELECT current_user").rows.at(0).at(0)), "ana");

  const std::string error =
      ErrorOf([&] { OpenBase(Address("servidor.prueba", "authority.crt", "ana:otra%25que%40sea")); });
  EXPECT_NE(error.find(": No hay permiso para usar la base: "), std::string::npos) << error;
  EXPECT_EQ(error.find("que"), std::string::npos) << error;

  // Changed while the session is lost: told by the next statement.
  owner->Execute("ALTER ROLE ana PASSWORD 'nueva'");
  owner->Run("SELECT pg_terminate_backend(pid, 2000) FROM pg_stat_activity WHERE usename = 'ana'", {});
  db->Waiting().ActBegins();
  db->Waiting().Vain();
  const std::string again = ErrorOf([&] { db->Execute("SELECT 1"); });
  EXPECT_TRUE(again.starts_with("No hay conexión con la base " + base->Address() + ": ")) << again;
  EXPECT_EQ(again.find("que"), std::string::npos) << again;
}

}  // namespace
}  // namespace tarvik::data
