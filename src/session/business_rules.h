#pragma once

#include <string>

#include "base/rows.h"
#include "base/session_values.h"
#include "environment/command_set.h"
#include "environment/files_and_folders.h"
#include "images/decoding.h"
#include "images/device_records.h"
#include "images/image_downloads.h"
#include "images/node_lists.h"
#include "images/statistics_files.h"
#include "jobs/file_helpers.h"
#include "jobs/job_index.h"
#include "jobs/job_results.h"
#include "jobs/message_index.h"
#include "jobs/scheduler_files.h"
#include "jobs/script_writer.h"
#include "platform/clock.h"
#include "platform/components.h"
#include "platform/files.h"
#include "platform/user_interface.h"
#include "platform/xml_rows.h"
#include "siterules/firmware_rules.h"
#include "siterules/site_lookups.h"

namespace qvrcom::session {

// What the business rules work with. A program's wiring makes one; every operation makes its own rules of it.
struct BusinessRulesParts {
  base::Session& session;
  platform::UserInterface& ui;
  platform::Clock& clock;
  platform::Files& files;
  const environment::FilesAndFolders& folders;
  environment::DBase& dbase;
  platform::Components& components;
  const platform::XmlRows& xml_rows;
};

// What the small classes stand on: made before them, gone after them.
struct Ground {
  jobs::SchedulerFiles scheduler;
  jobs::DownloadDecoders decoders;  // of the downloads that are decoded by their name
};

// The suite's procedures under one name. Each stands in a small class on the floor where it belongs.
class BusinessRules : private Ground,
                      public jobs::FileHelpers,
                      public jobs::ScriptWriter,
                      public jobs::JobIndex,
                      public siterules::SiteLookups,
                      public siterules::FirmwareRules,
                      public images::StatisticsFiles,
                      public images::StatisticsDecoding,
                      public images::ImageDownloads,
                      public images::ReceivedConfiguration,
                      public images::DeviceRecords,
                      public images::NodeLists,
                      public jobs::MessageIndex,
                      public jobs::JobResults {
 public:
  explicit BusinessRules(const BusinessRulesParts& parts);
  BusinessRules(const BusinessRules&) = delete;
  BusinessRules& operator=(const BusinessRules&) = delete;

  // Data that the suite's screens leave here for each other; the procedures do not touch it.
  base::Rows XML_RS;
  std::string m_PartID;
  base::Rows RS;
  std::string TempPartID;
};

}  // namespace qvrcom::session
