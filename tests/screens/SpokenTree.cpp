// Prints the names of all that a screen reader finds in an application's windows over the bus, a line each, from the
// top down. Its argument is the application's name; fails where no such application is on the bus.
#include <cstdio>
#include <cstdlib>
#include <string>

#include <atspi/atspi.h>

namespace {

std::string nameOf(AtspiAccessible* thing) {
  char* const name = atspi_accessible_get_name(thing, nullptr);
  const std::string copy = name ? name : "";
  g_free(name);
  return copy;
}

/// What is found is never released: the process ends after it.
void print(AtspiAccessible* thing, bool isWithinWindow) {
  if (isWithinWindow && !nameOf(thing).empty()) std::puts(nameOf(thing).c_str());
  const int count = atspi_accessible_get_child_count(thing, nullptr);
  for (int index = 0; index < count; ++index) {
    AtspiAccessible* child = atspi_accessible_get_child_at_index(thing, index, nullptr);
    if (!child || !atspi_state_set_contains(atspi_accessible_get_state_set(child), ATSPI_STATE_SHOWING)) continue;
    print(child, atspi_accessible_get_role(child, nullptr) != ATSPI_ROLE_FRAME);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || atspi_init() != 0) return 2;
  AtspiAccessible* desktop = atspi_get_desktop(0);
  const int count = atspi_accessible_get_child_count(desktop, nullptr);
  for (int index = 0; index < count; ++index) {
    AtspiAccessible* application = atspi_accessible_get_child_at_index(desktop, index, nullptr);
    if (!application || nameOf(application) != argv[1]) continue;
    print(application, false);
    std::fflush(stdout);
    std::_Exit(0);
  }
  return 1;
}
