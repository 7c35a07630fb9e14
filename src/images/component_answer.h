#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/components.h"
#include "platform/user_interface.h"

namespace qvrcom::images {

inline constexpr const char* kSystemDecoder = "QVRBIN7_2.Sys";
inline constexpr const char* kPartitionDecoder = "QVRBIN7_2.Part";
inline constexpr const char* kStatisticsWriter = "QVRStats.Stats";

// What an image component answers when it has done what it was asked to.
inline constexpr std::string_view kDone = "OK";

// Asks a component; a null answer is the empty text.
std::string answer_of(platform::Component& component, std::string_view operation,
                      std::initializer_list<std::string> arguments);

// A failed component's answer as it stands, in a box without icon and title. `file_name` is what it was to
// decode.
void show_answer(platform::UserInterface& ui, const std::string& answer, const std::string& component,
                 const std::string& file_name);

}  // namespace qvrcom::images
