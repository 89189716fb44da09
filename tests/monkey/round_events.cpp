// What a client's code does while a member runs.
#include <algorithm>

#include "monkey/journal.h"
#include "monkey/listener.h"
#include "monkey/round.h"

namespace monkey {
namespace {

void PumpMessages() {
  MSG message;
  for (int i = 0; i < 10 && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
    DispatchMessageW(&message);
  }
}

void CheckEvent(const Class& source, DISPID id, const DISPPARAMS& parameters) {
  const auto event = std::find_if(source.events.begin(), source.events.end(),
                                  [id](const Event& each) { return each.id == id; });
  if (event == source.events.end()) return journal::ReportWrongOutcome("an unknown event");
  bool as_described = parameters.cArgs == event->types.size() && parameters.cNamedArgs == 0;
  for (UINT i = 0; as_described && i < parameters.cArgs; ++i) {
    as_described = parameters.rgvarg[parameters.cArgs - 1 - i].vt == event->types[i];
  }
  if (!as_described) journal::ReportWrongOutcome("an event with other arguments than described");
}

/// Answers what an event asks.
void AnswerAtRandom(DISPPARAMS& parameters, bool answer) {
  for (UINT i = 0; i < parameters.cArgs; ++i) {
    const VARIANT& argument = parameters.rgvarg[i];
    if (argument.vt == (VT_BYREF | VT_BOOL)) *argument.pboolVal = answer ? VARIANT_TRUE : 2;
  }
}

}  // namespace

std::vector<Population::Connection> Round::ConnectTo(IDispatch* object, const Class& its_class) {
  std::vector<Population::Connection> connections;
  if (its_class.events_iid == GUID_NULL) return connections;
  for (unsigned count = Below(3); count > 0; --count) {
    Listener::Connect(
        object, its_class,
        [this](Listener& listener, DISPID event, DISPPARAMS& parameters) {
          return OnEvent(listener, event, parameters);
        },
        connections);
  }
  return connections;
}

HRESULT Round::OnEvent(Listener& listener, DISPID event, DISPPARAMS& parameters) {
  journal::Progress();
  CheckEvent(listener.SourceClass(), event, parameters);
  if (--events_left_ < 0 || !inside_ || !OneIn(4)) return S_OK;
  DoAnything(listener, parameters);
  constexpr HRESULT kAnswers[] = {S_OK, S_OK, E_FAIL, DISP_E_EXCEPTION, S_FALSE};
  return kAnswers[Below(std::size(kAnswers))];
}

void Round::DoAnything(Listener& listener, DISPPARAMS& parameters) {
  const bool may_call = depth_ > 0 && calls_left_ > 0;
  switch (Below(10)) {
    case 0:
    case 1:
      if (may_call) --calls_left_, CallAnything();
      break;
    case 2:
    case 3: {  // back into who raised the event
      const auto& members = listener.SourceClass().members;
      const Member& member = members[Below(members.size())];
      const auto target = std::find_if(targets_.begin(), targets_.end(),
                                       [&](const Target& each) { return each.member == &member; });
      if (may_call && population_.Has(listener.Source())) {
        --calls_left_, Call(*target, listener.Source());
      }
      break;
    }
    case 4:
      listener.Disconnect();
      break;
    case 5:
      population_.LetGo(listener.Source());
      break;
    case 6:
      population_.LetOneGo();
      break;
    case 7:
      AnswerAtRandom(parameters, OneIn(2));
      break;
    case 8:
      PostMessageW(window_, WM_APP, 0, 0);
      break;
    default:
      PumpMessages();
  }
}

void Round::Interfere() {
  journal::Progress();
  if (!inside_ || calls_left_ <= 0 || !OneIn(8)) return;
  --calls_left_;
  CallAnything();
}

LRESULT CALLBACK Round::OnMessage(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
  if (message != WM_APP) return DefWindowProcW(window, message, wide, parameter);
  if (auto* round = reinterpret_cast<Round*>(GetWindowLongPtrW(window, GWLP_USERDATA))) {
    round->Interfere();
  }
  return 0;
}

}  // namespace monkey
