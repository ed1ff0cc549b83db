#include "tls/TestAuthority.h"

#include <cstdlib>
#include <stdexcept>

namespace orn {
namespace {

void require(bool succeeded) {
  if (!succeeded) throw std::runtime_error("no certificate");
}

}  // namespace

TestAuthority::TestAuthority() : authority_(newCertificate("-subj /CN=Authority")) {}

TestAuthority::Issued TestAuthority::issue(const std::string& names) {
  return newCertificate("-subj /CN=Server -addext subjectAltName=" + names + " -CA " + authority_.certificate +
                        " -CAkey " + authority_.key);
}

TestAuthority::Issued TestAuthority::newCertificate(const std::string& options) {
  const std::string path = folder_.path() + "/" + std::to_string(++count_);
  const Issued issued{path + ".pem", path + ".key"};
  const std::string command = "openssl req -x509 -noenc -newkey ec -pkeyopt ec_paramgen_curve:P-256 " + options +
                              " -out " + issued.certificate + " -keyout " + issued.key + " 2> " + path + ".log";
  require(std::system(command.c_str()) == 0);
  return issued;
}

std::shared_ptr<SSL_CTX> serverContext(const TestAuthority::Issued& issued) {
  std::shared_ptr<SSL_CTX> context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
  require(SSL_CTX_use_certificate_file(context.get(), issued.certificate.c_str(), SSL_FILETYPE_PEM) == 1 &&
          SSL_CTX_use_PrivateKey_file(context.get(), issued.key.c_str(), SSL_FILETYPE_PEM) == 1);
  return context;
}

}  // namespace orn
