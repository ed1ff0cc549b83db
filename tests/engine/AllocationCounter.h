#pragma once

#include <functional>

namespace orn {

/// How often something asks for memory on this thread, the library included. Links in counting operators new.
int allocationsOf(const std::function<void()>& what);

}  // namespace orn
