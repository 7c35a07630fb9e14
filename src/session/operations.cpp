#include "session/operations.h"

#include <array>

#include "session/device_view.h"
#include "session/same_log_operations.h"
#include "session/statistics_operations.h"

namespace qvrcom::session {
namespace {

constexpr std::array<Operation, 15> kOperations{{
    {operation::kRetrieveStatistics, EntryKind::kVersionCheck,
     [](SiteOperations& all) { all.statistics.ReceiveStatSinPart_NewQVR(); },
     [](SiteOperations& all) { all.statistics.process_outcome(operation::kRetrieveStatistics); }},
    {operation::kResetStatistics, EntryKind::kPlain,
     [](SiteOperations& all) { all.statistics.ResetStatSinPart_NewQVR(); },
     [](SiteOperations& all) { all.statistics.process_outcome(operation::kResetStatistics); }},
    {operation::kRetrieveResetStatistics, EntryKind::kVersionCheck,
     [](SiteOperations& all) { all.statistics.ReceiveResetStatSinPart_NewQVR(); },
     [](SiteOperations& all) { all.statistics.process_outcome(operation::kRetrieveResetStatistics); }},
    {operation::kRetrieveSameLog, EntryKind::kVersionCheck,
     [](SiteOperations& all) { all.same_log.RetrieveSAME_Log(); },
     [](SiteOperations& all) { all.same_log.process_outcome(); }},
    {operation::kViewDevice, EntryKind::kView, [](SiteOperations& all) { all.view.retrieve_index(); }},
    {operation::kGetLog, EntryKind::kCommand},
    {operation::kGetAndResetLog, EntryKind::kCommand},
    {operation::kResetLog, EntryKind::kCommand},
    {operation::kGetDateAndTime, EntryKind::kCommand},
    {operation::kSetDateAndTime, EntryKind::kCommand},
    {operation::kTelnetSession, EntryKind::kCommand},
    {operation::kRetrieveMessageIndex, EntryKind::kCommand},
    {operation::kGetSystemInformation, EntryKind::kCommand},
    {operation::kSendFirmware, EntryKind::kCommand},
    {operation::kSendCannedMessages, EntryKind::kCommand},
}};

}  // namespace

std::span<const Operation> operations() {
  return kOperations;
}

}  // namespace qvrcom::session
