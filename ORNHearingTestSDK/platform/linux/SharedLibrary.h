#pragma once

#include <stdexcept>
#include <string>

#include <dlfcn.h>

namespace orn {

/// A system library that is loaded when something of it is first needed, and then stays: libcurl alone brings
/// dozens of others along, for which an application whose user takes no test should not have to wait.
///
/// The functions used of a library are the members of a class of its own:
///
///     struct LibFoo : SharedLibrary {
///       LibFoo() : SharedLibrary("libfoo.so.1") {}
///       ORN_FUNCTION(foo_open);
///     };
class SharedLibrary {
 protected:
  /// Throws std::runtime_error with the loader's words if there is no such library.
  explicit SharedLibrary(const char* name) : handle_(dlopen(name, RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_) throw std::runtime_error(dlerror());
  }

  /// Throws std::runtime_error with the loader's words if the library has no such function.
  template <class Function>
  Function* find(const char* name) const {
    void* address = dlsym(handle_, name);
    if (!address) throw std::runtime_error(dlerror());
    return reinterpret_cast<Function*>(address);
  }

 private:
  void* handle_;
};

/// A member that is the function of this name, with the type that the library's own header gives it.
#define ORN_FUNCTION(name) decltype(&::name) name = find<decltype(::name)>(#name)

}  // namespace orn
