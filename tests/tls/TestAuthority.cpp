#include "tls/TestAuthority.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

namespace orn {
namespace {

constexpr std::chrono::hours kDay{24};

void require(bool succeeded) {
  if (!succeeded) throw std::runtime_error("no certificate");
}

template <class Write>
void writeFile(const std::filesystem::path& path, Write write) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "w"), std::fclose);
  require(file && write(file.get()) == 1);
}

std::filesystem::path newFolder() {
  std::string name = std::filesystem::temp_directory_path() / "authority.XXXXXX";
  require(mkdtemp(name.data()) != nullptr);
  return name;
}

}  // namespace

TestAuthority::TestAuthority() : folder_(newFolder()), key_(EVP_EC_gen("P-256"), EVP_PKEY_free) {
  certificate_ = signedFor(*key_, folder_.filename(), NID_basic_constraints, "critical,CA:TRUE", kDay);
  writeFile(certificate(), [&](FILE* file) { return PEM_write_X509(file, certificate_.get()); });
}

TestAuthority::~TestAuthority() { std::filesystem::remove_all(folder_); }

TestAuthority::Issued TestAuthority::issue(const std::string& names, std::chrono::hours validFor) {
  const std::string number = std::to_string(++issued_);
  Issued issued{folder_ / (number + ".pem"), folder_ / (number + ".key")};
  const Key key(EVP_EC_gen("P-256"), EVP_PKEY_free);
  const Certificate issuedOne = signedFor(*key, "Server of a test", NID_subject_alt_name, names, validFor);
  writeFile(issued.certificate, [&](FILE* file) { return PEM_write_X509(file, issuedOne.get()); });
  writeFile(issued.key, [&](FILE* file) {
    return PEM_write_PKCS8PrivateKey(file, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
  });
  return issued;
}

TestAuthority::Certificate TestAuthority::signedFor(EVP_PKEY& key, const std::string& subject, int extension,
                                                    const std::string& value, std::chrono::hours validFor) const {
  Certificate made(X509_new(), X509_free);
  X509_set_version(made.get(), X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(made.get()), issued_ + 1);
  X509_gmtime_adj(X509_getm_notBefore(made.get()), std::chrono::seconds(validFor - 2 * kDay).count());
  X509_gmtime_adj(X509_getm_notAfter(made.get()), std::chrono::seconds(validFor).count());
  X509_NAME* const name = X509_get_subject_name(made.get());
  const auto* const text = reinterpret_cast<const unsigned char*>(subject.c_str());
  require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, text, -1, -1, 0) == 1);
  X509_set_issuer_name(made.get(), certificate_ ? X509_get_subject_name(certificate_.get()) : name);
  X509_set_pubkey(made.get(), &key);
  X509_EXTENSION* const one = X509V3_EXT_conf_nid(nullptr, nullptr, extension, value.c_str());
  require(one && X509_add_ext(made.get(), one, -1) == 1);
  X509_EXTENSION_free(one);
  require(X509_sign(made.get(), key_.get(), EVP_sha256()) != 0);
  return made;
}

std::shared_ptr<SSL_CTX> serverContext(const TestAuthority::Issued& issued) {
  std::shared_ptr<SSL_CTX> context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
  require(SSL_CTX_use_certificate_file(context.get(), issued.certificate.c_str(), SSL_FILETYPE_PEM) == 1 &&
          SSL_CTX_use_PrivateKey_file(context.get(), issued.key.c_str(), SSL_FILETYPE_PEM) == 1);
  return context;
}

}  // namespace orn
