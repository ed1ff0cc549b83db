#include <ORNHearingTestSDK/platform/linux/DefaultSinkQuestion.h>

#include <utility>

#include <pulse/introspect.h>
#include <pulse/operation.h>

namespace orn {

void DefaultSinkQuestion::ask(Answer answer) {
  answer_ = std::move(answer);
  context_ = connection_.newContext();
  pa_context_set_state_callback(
      context_, [](pa_context*, void* self) { static_cast<DefaultSinkQuestion*>(self)->stateChanged(); }, this);
  // It may have failed and answered already.
  if (!connection_.connect(context_) && context_) this->answer("");
}

void DefaultSinkQuestion::stateChanged() {
  const pa_context_state_t state = pa_context_get_state(context_);
  if (!PA_CONTEXT_IS_GOOD(state)) return answer("");
  if (state != PA_CONTEXT_READY) return;
  pa_operation* operation = pa_context_get_server_info(
      context_,
      [](pa_context*, const pa_server_info* server, void* self) {
        const char* sink = server ? server->default_sink_name : nullptr;
        static_cast<DefaultSinkQuestion*>(self)->answer(sink ? sink : "");
      },
      this);
  if (operation) pa_operation_unref(operation);
}

void DefaultSinkQuestion::answer(const char* sink) {
  const Answer answer = std::move(answer_);
  const std::string text = sink;  // which goes with the connection
  cancel();
  answer(text);
}

void DefaultSinkQuestion::cancel() {
  answer_ = nullptr;
  PulseConnection::close(context_);
}

}  // namespace orn
