#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include <openssl/ssl.h>
#include <openssl/x509.h>

namespace orn {

/// An authority that nobody trusts, and the certificates that it issues: as PEM files in a folder that is removed with
/// it.
class TestAuthority {
 public:
  TestAuthority();
  ~TestAuthority();
  TestAuthority(const TestAuthority&) = delete;
  TestAuthority& operator=(const TestAuthority&) = delete;

  /// Its own certificate.
  std::filesystem::path certificate() const { return folder_ / "authority.pem"; }

  struct Issued {
    std::filesystem::path certificate, key;
  };

  /// For names such as "IP:127.0.0.1,DNS:localhost", valid from two days before its end, which may be past.
  Issued issue(const std::string& names, std::chrono::hours validFor = std::chrono::hours(24));

 private:
  using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
  using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

  Certificate signedFor(EVP_PKEY& key, const std::string& subject, int extension, const std::string& value,
                        std::chrono::hours validFor) const;

  std::filesystem::path folder_;
  Key key_;
  Certificate certificate_{nullptr, X509_free};
  int issued_ = 0;
};

/// What a server of that certificate needs. Throws std::runtime_error if the files can't be used.
std::shared_ptr<SSL_CTX> serverContext(const TestAuthority::Issued& issued);

}  // namespace orn
