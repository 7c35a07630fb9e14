#include "session/business_rules.h"

namespace qvrcom::session {

BusinessRules::BusinessRules(const BusinessRulesParts& parts)
    : Ground{{parts.session.run, parts.folders, parts.files}, {}},
      FileHelpers(scheduler, parts.folders, parts.files, parts.ui),
      ScriptWriter(parts.session.job, scheduler, *this, parts.files, parts.ui),
      JobIndex(parts.session.site, parts.session.job, scheduler, *this, parts.clock, parts.ui),
      SiteLookups(platform::Trap(parts.ui), parts.session.site, parts.components, parts.xml_rows,
                  parts.dbase),
      FirmwareRules(platform::Trap(parts.ui)),
      StatisticsFiles(parts.folders, parts.files, parts.ui),
      StatisticsDecoding(parts.session.run, parts.components, parts.ui),
      ImageDownloads(static_cast<ScriptWriter&>(*this)),
      ReceivedConfiguration({parts.session.site, parts.session.run, parts.session.received, parts.components,
                             parts.xml_rows, parts.ui}),
      DeviceRecords(parts.session.received, parts.files, parts.ui),
      NodeLists(parts.session.nodes, parts.dbase, parts.ui),
      MessageIndex(parts.session.received, parts.files, parts.ui),
      JobResults(parts.session.job, scheduler, *this, *this, parts.files, parts.ui, decoders) {
  decoders = {
      {jobs::is_message_index, [this](const std::string& file) { Process_MsgIndex(file); }},
      // A message is one whatever else its name holds.
      {jobs::is_message,
       [this](const std::string& file) { ReceivedPartition = jobs::partition_of_message(file); }},
      {jobs::is_configuration_image, [this](const std::string& file) { Write_Database(file); }},
  };
}

}  // namespace qvrcom::session
