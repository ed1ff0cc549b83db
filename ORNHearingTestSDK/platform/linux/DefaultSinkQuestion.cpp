#include <ORNHearingTestSDK/platform/linux/DefaultSinkQuestion.h>

#include <utility>

#include <ORNHearingTestSDK/platform/linux/LibPulse.h>

namespace orn {

void DefaultSinkQuestion::ask(Answer answer) {
  answer_ = std::move(answer);
  context_ = connection_.newContext();
  libpulse().pa_context_set_state_callback(
      context_, [](pa_context*, void* self) { static_cast<DefaultSinkQuestion*>(self)->stateChanged(); }, this);
  // It may have failed and answered already.
  if (!connection_.connect(context_) && context_) this->answer(std::nullopt);
}

void DefaultSinkQuestion::stateChanged() {
  const pa_context_state_t state = libpulse().pa_context_get_state(context_);
  if (!PA_CONTEXT_IS_GOOD(state)) return answer(std::nullopt);
  if (state != PA_CONTEXT_READY) return;
  pa_operation* operation = libpulse().pa_context_get_server_info(
      context_,
      [](pa_context*, const pa_server_info* server, void* self) {
        auto& question = *static_cast<DefaultSinkQuestion*>(self);
        if (!server) return question.answer(std::nullopt);
        question.answer(server->default_sink_name ? server->default_sink_name : "");
      },
      this);
  if (!operation) return answer(std::nullopt);
  libpulse().pa_operation_unref(operation);
}

void DefaultSinkQuestion::answer(std::optional<std::string> sink) {
  const Answer answer = std::move(answer_);
  cancel();
  answer(std::move(sink));
}

void DefaultSinkQuestion::cancel() {
  answer_ = nullptr;
  PulseConnection::close(context_);
}

}  // namespace orn
