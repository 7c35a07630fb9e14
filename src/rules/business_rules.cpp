#include "rules/business_rules.h"

namespace qvrcom::rules {

BusinessRules::BusinessRules(const BusinessRulesParts& parts)
    : Ground{{parts.session.run, parts.folders, parts.files}, {}},
      FileHelpers(scheduler, parts.folders, parts.files, parts.ui),
      ScriptWriter(parts.session.job, scheduler, *this, parts.files, parts.ui),
      JobIndex(parts.session.site, parts.session.job, scheduler, *this, parts.clock, parts.ui),
      SiteLookups(platform::Trap(parts.ui), parts.session.site, parts.components, parts.xml_rows,
                  parts.dbase),
      FirmwareRules(platform::Trap(parts.ui)),
      StatisticsFiles(parts.folders, parts.files, parts.ui),
      JobResults(parts.session.job, scheduler, *this, *this, parts.files, parts.ui, decoders) {}

}  // namespace qvrcom::rules
