#pragma once

#include <cstdint>

// Names that every program of the suite agrees on.
namespace qvrcom::environment {

// Folders. Maker and suite folder lie below both machine-wide folders.
inline constexpr const char* kMakerFolder = "Corbelin";
inline constexpr const char* kSuiteFolder = "QVRCOM+";
inline constexpr const char* kMsgsFolder = "Msgs";
inline constexpr const char* kStatsFolder = "Stats";
inline constexpr const char* kSameLogsFolder = "SAMELogs";
inline constexpr const char* kRescuedFolder = "Rescued";
inline constexpr const char* kDatabaseFolder = "Database";
inline constexpr const char* kSchedulerFolder = "Scheduler";
inline constexpr const char* kLogsFolder = "Logs";

// Programs, in the application folder.
inline constexpr const char* kJobPilotProgram = "JobPilot.exe";
inline constexpr const char* kRePilotProgram = "RePilot.exe";

// Files.
inline constexpr const char* kDatabaseFile = "NewDB.mdb";

// Generations of the statistics that a device keeps.
inline constexpr const char* kNewStats = "NewStats";
inline constexpr const char* kOldStats = "OldStats";

// Machine-wide folders by identifier, and the registry key that names them too.
inline constexpr std::int32_t kCommonAppDataIdentifier = 35;
inline constexpr std::int32_t kCommonDocumentsIdentifier = 46;
inline constexpr const char* kShellFoldersKey =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
inline constexpr const char* kCommonAppDataValue = "Common AppData";
inline constexpr const char* kCommonDocumentsValue = "Common Documents";

// The per-user setting that names the application folder.
inline constexpr const char* kSettingsApplication = "QVRCOM+";
inline constexpr const char* kSettingsSection = "Application";
inline constexpr const char* kAppPathSetting = "AppPath";

}  // namespace qvrcom::environment
