// The plug-in libraries of the tests: PLUGIN_KIND says what is wrong with one, PLUGIN_ENTRY names its
// function.
#include <qvrcom/component_plugin.h>

#include <stdexcept>
#include <string>

namespace {

enum Kind { kGood, kNewer, kNameless, kCallless, kSilent, kThrowing };
constexpr Kind kKind = PLUGIN_KIND;

int alive = 0;

int make(void** self, qvrcom_answer, void*) {
  *self = new std::string("state");
  ++alive;
  return QVRCOM_DONE;
}

void end(void* self) {
  delete static_cast<std::string*>(self);
  --alive;
}

int say(const std::string& text, int code, qvrcom_answer answer, void* receiver) {
  answer(receiver, text.data(), text.size());
  return code;
}

int refuse(void**, qvrcom_answer answer, void* receiver) {
  return say("The licence has expired.", QVRCOM_FAILED, answer, receiver);
}

int burst(void**, qvrcom_answer, void*) {
  throw std::runtime_error("no room");
}

std::string joined(const qvrcom_text* arguments, std::size_t count) {
  std::string text;
  for (std::size_t place = 0; place < count; ++place)
    text += std::string(arguments[place].bytes, arguments[place].length) + "|";
  return text;
}

int call(void* self, const char* operation, const qvrcom_text* arguments, std::size_t count,
         qvrcom_answer answer, void* receiver) {
  const std::string name = operation;
  if (name == "Join") return say(joined(arguments, count), QVRCOM_DONE, answer, receiver);
  if (name == "State") return say(*static_cast<std::string*>(self), QVRCOM_DONE, answer, receiver);
  if (name == "Alive") return say(std::to_string(alive), QVRCOM_DONE, answer, receiver);
  if (name == "Nothing") return QVRCOM_DONE;
  if (name == "Latin1") return say("caf\xe9", QVRCOM_DONE, answer, receiver);
  if (name == "Large") return say(std::string(16 * 1024 * 1024, 'x'), QVRCOM_DONE, answer, receiver);
  if (name == "Larger") return say(std::string(16 * 1024 * 1024 + 1, 'x'), QVRCOM_DONE, answer, receiver);
  if (name == "Fail") return say("The disk is full.", 7, answer, receiver);
  if (name == "FailBadly") return say("caf\xe9", 7, answer, receiver);
  if (name == "WriteStatsCsv")
    return say("No CSV of " + joined(arguments, count), QVRCOM_DONE, answer, receiver);
  if (name == "Throw") throw std::runtime_error("out of paper");
  if (name == "ThrowNumber") throw 5;
  return QVRCOM_NO_SUCH_OPERATION;
}

const qvrcom_component kComponents[] = {
    {kKind == kNameless ? nullptr : "Test.One", make, end, kKind == kCallless ? nullptr : call},
    {"Test.Refusing", refuse, end, call},
    {"Test.Bursting", burst, end, call},
    {"QVRStats.Stats", make, end, call},
};

const qvrcom_component_plugin kPlugin{kKind == kNewer ? 2u : QVRCOM_COMPONENT_PLUGIN_VERSION, 4u,
                                      kComponents};

}  // namespace

extern "C" QVRCOM_PLUGIN_EXPORT const qvrcom_component_plugin* PLUGIN_ENTRY(void) {
  if (kKind == kThrowing) throw std::runtime_error("nobody home");
  return kKind == kSilent ? nullptr : &kPlugin;
}
