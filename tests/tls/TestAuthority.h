#pragma once

#include <memory>
#include <string>

#include <openssl/ssl.h>

#include <ORNHearingTestSDK/contracts/TemporaryFolder.h>

namespace orn {

/// An authority that nobody trusts, and the certificates that it issues: as PEM files in a folder that is removed with
/// it.
class TestAuthority {
 public:
  TestAuthority();

  struct Issued {
    std::string certificate, key;
  };

  /// Its own certificate.
  std::string certificate() const { return authority_.certificate; }

  /// For names such as "IP:127.0.0.1,DNS:localhost".
  Issued issue(const std::string& names);

 private:
  Issued newCertificate(const std::string& options);

  contract::TemporaryFolder folder_;
  int count_ = 0;
  Issued authority_;
};

/// What a server of that certificate needs. Throws std::runtime_error if the files can't be used.
std::shared_ptr<SSL_CTX> serverContext(const TestAuthority::Issued& issued);

}  // namespace orn
