#include "session/operations.h"

#include <array>

#include "session/statistics_operations.h"

namespace qvrcom::session {
namespace {

constexpr std::array<Operation, 3> kOperations{{
    {operation::kRetrieveStatistics, EntryKind::kVersionCheck,
     [](SiteOperations& all) { all.statistics.ReceiveStatSinPart_NewQVR(); }},
    {operation::kResetStatistics, EntryKind::kPlain,
     [](SiteOperations& all) { all.statistics.ResetStatSinPart_NewQVR(); }},
    {operation::kRetrieveResetStatistics, EntryKind::kVersionCheck,
     [](SiteOperations& all) { all.statistics.ReceiveResetStatSinPart_NewQVR(); }},
}};

}  // namespace

std::span<const Operation> operations() {
  return kOperations;
}

}  // namespace qvrcom::session
