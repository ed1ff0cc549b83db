// Prints what a screen reader finds of an application: a line for each thing that shows, "DEPTH|ROLE|NAME".
#include <cstdio>
#include <cstdlib>
#include <string>

#include <atspi/atspi.h>

namespace {

std::string textOf(gchar* text) {
  std::string copy = text ? text : "";
  g_free(text);
  for (char& one : copy) {
    if (one == '\n') one = ' ';
  }
  return copy;
}

bool isShowing(AtspiAccessible* thing) {
  AtspiStateSet* states = atspi_accessible_get_state_set(thing);
  const bool isIt = states && atspi_state_set_contains(states, ATSPI_STATE_SHOWING);
  if (states) g_object_unref(states);
  return isIt;
}

void print(AtspiAccessible* thing, int depth) {
  if (depth > 0 && !isShowing(thing)) return;
  std::printf("%d|%s|%s\n", depth, textOf(atspi_accessible_get_role_name(thing, nullptr)).c_str(),
              textOf(atspi_accessible_get_name(thing, nullptr)).c_str());
  const int count = atspi_accessible_get_child_count(thing, nullptr);
  for (int index = 0; index < count; ++index) {
    AtspiAccessible* child = atspi_accessible_get_child_at_index(thing, index, nullptr);
    if (!child) continue;
    print(child, depth + 1);
    g_object_unref(child);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || atspi_init() != 0) return 2;
  AtspiAccessible* desktop = atspi_get_desktop(0);
  const int count = atspi_accessible_get_child_count(desktop, nullptr);
  for (int index = 0; index < count; ++index) {
    AtspiAccessible* application = atspi_accessible_get_child_at_index(desktop, index, nullptr);
    if (!application || textOf(atspi_accessible_get_name(application, nullptr)) != argv[1]) continue;
    print(application, 0);
    std::fflush(stdout);
    std::_Exit(0);  // the bus's library keeps what it has until then
  }
  return 1;
}
