SELECT COUNT(*) FROM sqlite_master
CREATE TABLE Site (SiteID INTEGER PRIMARY KEY AUTOINCREMENT, User_Defined_Site_Name TEXT, User_Defined_Site_ID TEXT, ControlCardType TEXT, ConnectMethodID INTEGER, IPLAN TEXT, IPMODEM TEXT, AccessCode TEXT, DialupConnection TEXT, NumberToDial TEXT, FirmwareVersion TEXT)
CREATE TABLE "SessionQVR" ("SiteID" INTEGER)
CREATE TABLE "Users" ("LoginName" TEXT, "Current" INTEGER)
CREATE TABLE "Configurations" ("ID" INTEGER, "Current" INTEGER)
CREATE TABLE "File_Handling" ("SiteID" INTEGER, "FileType" TEXT, "DefaultPathname" TEXT, "DefaultFilename" TEXT, "AutoIncrements" TEXT)
CREATE INDEX "By_File_Handling" ON "File_Handling" ("SiteID")
CREATE TABLE "Partition_Settings" ("Config_ID" INTEGER, "PartitionID" INTEGER, "Name" TEXT)
CREATE INDEX "By_Partition_Settings" ON "Partition_Settings" ("Config_ID")
CREATE TABLE "Used_Lines" ("Config_ID" INTEGER, "Base_Slot_No" INTEGER, "Slot_Offset" INTEGER, "Line" INTEGER, "RTQA_Option" INTEGER)
CREATE INDEX "By_Used_Lines" ON "Used_Lines" ("Config_ID")
CREATE TABLE "RTQAConfig" ("ConfigID" INTEGER, "SwitchType" INTEGER)
CREATE INDEX "By_RTQAConfig" ON "RTQAConfig" ("ConfigID")
CREATE TABLE "Used_Cards" ("Config_ID" INTEGER)
CREATE INDEX "By_Used_Cards" ON "Used_Cards" ("Config_ID")
CREATE TABLE "Node_Type_Max" ("Config_ID" INTEGER)
CREATE INDEX "By_Node_Type_Max" ON "Node_Type_Max" ("Config_ID")
CREATE TABLE "Daylight_Savings" ("ConfigID" INTEGER)
CREATE INDEX "By_Daylight_Savings" ON "Daylight_Savings" ("ConfigID")
CREATE TABLE "Daylight_Mode_Date" ("DaylightSavingsMasterID" INTEGER)
CREATE INDEX "By_Daylight_Mode_Date" ON "Daylight_Mode_Date" ("DaylightSavingsMasterID")
CREATE TABLE "QVRSettings" ("ConfigID" INTEGER, "StartNodeType" TEXT, "StartNodeNumber" INTEGER, "PartitionID" INTEGER, "LineAssignment" TEXT, "CardVariant" TEXT, "CountryCode" TEXT, "RemoteModeType" TEXT, "RemoteModeNumber" INTEGER, "MsgType" TEXT, "PartitionEnabled" TEXT, "MaxPartitionNo" INTEGER, "FrontPanelAccess" TEXT, "ModemAccess" TEXT, "Machine_Type_ID" INTEGER, "ControlCardType" TEXT, "Embedded_Remote_Line" TEXT, "ModemCountryCode" TEXT, "Impedance" TEXT)
CREATE INDEX "By_QVRSettings" ON "QVRSettings" ("ConfigID")
CREATE TABLE "Stats_Auto_Selection_Counts" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Auto_Selection_Counts" ON "Stats_Auto_Selection_Counts" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_Detail_Auto" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Detail_Auto" ON "Stats_Detail_Auto" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_Detail_DTMF" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Detail_DTMF" ON "Stats_Detail_DTMF" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_Detail_VOX" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Detail_VOX" ON "Stats_Detail_VOX" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_DTMF_Selection_Counts" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_DTMF_Selection_Counts" ON "Stats_DTMF_Selection_Counts" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_Line_Call_Counts" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Line_Call_Counts" ON "Stats_Line_Call_Counts" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_Line_XFER_Counts" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Line_XFER_Counts" ON "Stats_Line_XFER_Counts" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_Node_Access" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Node_Access" ON "Stats_Node_Access" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_Selections_Made" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Selections_Made" ON "Stats_Selections_Made" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_Simultaneous_Lines_Active" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_Simultaneous_Lines_Active" ON "Stats_Simultaneous_Lines_Active" ("ConfigID", "PartitionID")
CREATE TABLE "Stats_VOX_Selection_Counts" ("ConfigID" INTEGER, "PartitionID" INTEGER)
CREATE INDEX "By_Stats_VOX_Selection_Counts" ON "Stats_VOX_Selection_Counts" ("ConfigID", "PartitionID")
CREATE TABLE "Detail_CMD" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT)
CREATE INDEX "By_Detail_CMD" ON "Detail_CMD" ("ConfigID", "PartID")
CREATE TABLE "Detail_TIME" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT)
CREATE INDEX "By_Detail_TIME" ON "Detail_TIME" ("ConfigID", "PartID")
CREATE TABLE "Detail_DATE" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT)
CREATE INDEX "By_Detail_DATE" ON "Detail_DATE" ("ConfigID", "PartID")
CREATE TABLE "Detail_DTMF_Action" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT, "DTMFDigitCollected" TEXT)
CREATE INDEX "By_Detail_DTMF_Action" ON "Detail_DTMF_Action" ("ConfigID", "PartID")
CREATE TABLE "Detail_DTMF_Prompts" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT)
CREATE INDEX "By_Detail_DTMF_Prompts" ON "Detail_DTMF_Prompts" ("ConfigID", "PartID")
CREATE TABLE "Detail_VOX_Action" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT, "PromptNodeNumber" INTEGER, "PromptNodeType" TEXT, "PromptNodeTypeID" INTEGER)
CREATE INDEX "By_Detail_VOX_Action" ON "Detail_VOX_Action" ("ConfigID", "PartID")
CREATE TABLE "Detail_VOX_Prompts" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT)
CREATE INDEX "By_Detail_VOX_Prompts" ON "Detail_VOX_Prompts" ("ConfigID", "PartID")
CREATE TABLE "Detail_LIST" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT)
CREATE INDEX "By_Detail_LIST" ON "Detail_LIST" ("ConfigID", "PartID")
CREATE TABLE "Detail_AUTO_Action" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT, "DTMFRangeHigh" TEXT, "DTMFRangeLow" TEXT)
CREATE INDEX "By_Detail_AUTO_Action" ON "Detail_AUTO_Action" ("ConfigID", "PartID")
CREATE TABLE "Detail_AUTO_Prompts" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT)
CREATE INDEX "By_Detail_AUTO_Prompts" ON "Detail_AUTO_Prompts" ("ConfigID", "PartID")
CREATE TABLE "Detail_TABLE_Action" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT, "EndRange" TEXT, "StartRange" TEXT)
CREATE INDEX "By_Detail_TABLE_Action" ON "Detail_TABLE_Action" ("ConfigID", "PartID")
CREATE TABLE "Detail_PAAS" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT)
CREATE INDEX "By_Detail_PAAS" ON "Detail_PAAS" ("ConfigID", "PartID")
CREATE TABLE "Detail_TABLE_Action_NIS_Match" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeMasterID" INTEGER, "NodeType" TEXT, "Match" TEXT)
CREATE INDEX "By_Detail_TABLE_Action_NIS_Match" ON "Detail_TABLE_Action_NIS_Match" ("ConfigID", "PartID")
CREATE TABLE "Detail_DBN_Prompts" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeMasterID" INTEGER, "PromptNumber" INTEGER, "PromptNodeTypeID" INTEGER, "PromptNodeType" TEXT, "PromptNodeNumber" INTEGER)
CREATE INDEX "By_Detail_DBN_Prompts" ON "Detail_DBN_Prompts" ("ConfigID", "PartID")
CREATE TABLE "Detail_DIR" ("ConfigID" INTEGER, "PartID" INTEGER, "SequenceNo" INTEGER, "NodeMasterID" INTEGER, "LastName" TEXT, "FirstName" TEXT, "Extension" TEXT, "NamePrompt" TEXT, "Password" TEXT)
CREATE INDEX "By_Detail_DIR" ON "Detail_DIR" ("ConfigID", "PartID")
CREATE TABLE "Node_General_Pool" ("ConfigID" INTEGER, "PartID" INTEGER)
CREATE INDEX "By_Node_General_Pool" ON "Node_General_Pool" ("ConfigID", "PartID")
CREATE TABLE "Node_MSG" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "MaxLength" TEXT, "OnOff" TEXT, "DTMF" TEXT, "Password" TEXT, "Directory" TEXT, "QVRFilename" TEXT, "Comment" TEXT, "SkipCount" TEXT, "Permission" TEXT, "WarningTone" TEXT, "LineAssignment" TEXT, "NodeType" TEXT, "NodeDescription" TEXT, "MSGArchive" TEXT)
CREATE INDEX "By_Node_MSG" ON "Node_MSG" ("ConfigID", "PartID")
CREATE TABLE "Node_CMD" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_CMD" ON "Node_CMD" ("ConfigID", "PartID")
CREATE TABLE "Node_TIME" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "StartTime" TEXT, "StopTime" TEXT, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_TIME" ON "Node_TIME" ("ConfigID", "PartID")
CREATE TABLE "Node_DATE" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "Mode" TEXT, "StartDate" TEXT, "StartDay" TEXT, "StopDate" TEXT, "StopDay" TEXT, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_DATE" ON "Node_DATE" ("ConfigID", "PartID")
CREATE TABLE "Node_XFER" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "AnswerNodeNumber" INTEGER, "AnswerNodeType" TEXT, "Busy1NodeNumber" INTEGER, "Busy1NodeType" TEXT, "Busy2NodeNumber" INTEGER, "Busy2NodeType" TEXT, "Dial" TEXT, "HoldNodeNumber" INTEGER, "HoldNodeType" TEXT, "MOHNodeNumber" INTEGER, "MOHNodeType" TEXT, "NoAnswerNodeNumber" INTEGER, "NoAnswerNodeType" TEXT, "StyleNodeNumber" INTEGER, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_XFER" ON "Node_XFER" ("ConfigID", "PartID")
CREATE TABLE "Node_STYLE" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "Disconnection" TEXT, "Hookflash" TEXT, "SuperviseID" INTEGER, "SuperviseType" TEXT, "ThresholdTypeID" INTEGER, "Transfer" TEXT, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_STYLE" ON "Node_STYLE" ("ConfigID", "PartID")
CREATE TABLE "Node_DTMF" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "AbortNodeNumber" INTEGER, "AbortNodeType" TEXT, "AbortNodeTypeID" INTEGER, "DigitTimeout" TEXT, "DTMFClear" TEXT, "InvalidNodeNumber" INTEGER, "InvalidNodeType" TEXT, "InvalidNodeTypeID" INTEGER, "NumberOfDigits" INTEGER, "RetryLimit" TEXT, "SelectionTimeout" TEXT, "TerminatingDigit" TEXT, "TimeoutNodeNumber" INTEGER, "TimeoutNodeType" TEXT, "TimeoutNodeTypeID" INTEGER, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_DTMF" ON "Node_DTMF" ("ConfigID", "PartID")
CREATE TABLE "Node_VOX" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "AbortNodeNumber" INTEGER, "AbortNodeType" TEXT, "AbortNodeTypeID" INTEGER, "Beep" TEXT, "DTMFNodeNumber" INTEGER, "DTMFNodeType" TEXT, "DTMFNodeTypeID" INTEGER, "RetryLimit" TEXT, "Threshold" TEXT, "TimeoutNodeNumber" INTEGER, "TimeoutNodeType" TEXT, "TimeoutNodeTypeID" INTEGER, "Wait" TEXT, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_VOX" ON "Node_VOX" ("ConfigID", "PartID")
CREATE TABLE "Node_LIST" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "ListMode" TEXT, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_LIST" ON "Node_LIST" ("ConfigID", "PartID")
CREATE TABLE "Node_AUTO" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "AbortNodeNumber" INTEGER, "AbortNodeType" TEXT, "AbortNodeTypeID" INTEGER, "DigitTimeout" TEXT, "InvalidNodeNumber" INTEGER, "InvalidNodeType" TEXT, "InvalidNodeTypeID" INTEGER, "NumberOfDigits" INTEGER, "PoundNodeNumber" INTEGER, "PoundNodeType" TEXT, "PoundNodeTypeID" INTEGER, "RetryLimit" TEXT, "SelectionTimeout" TEXT, "StarNodeNumber" INTEGER, "StarNodeType" TEXT, "StarNodeTypeID" INTEGER, "TerminatingDigit" TEXT, "TimeoutNodeNumber" INTEGER, "TimeoutNodeType" TEXT, "TimeoutNodeTypeID" INTEGER, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_AUTO" ON "Node_AUTO" ("ConfigID", "PartID")
CREATE TABLE "Node_MOH" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "FadeTime" TEXT, "IOSourceLinesID" INTEGER, "IOSourceLinesNumber" INTEGER, "IOSourceLinesType" TEXT, "MusicLevel" TEXT, "MusicNodeNumber" INTEGER, "MusicNodeType" TEXT, "VoiceNodeNumber" INTEGER, "VoiceNodeType" TEXT, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_MOH" ON "Node_MOH" ("ConfigID", "PartID")
CREATE TABLE "Node_PAAS" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "Card" TEXT, "Interrupt" TEXT, "Line" INTEGER, "Priority" TEXT, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_PAAS" ON "Node_PAAS" ("ConfigID", "PartID")
CREATE TABLE "Node_TABLE" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "ContinueNodeNumber" INTEGER, "ContinueNodeType" TEXT, "ContinueNodeTypeID" INTEGER, "InvalidNodeNumber" INTEGER, "InvalidNodeType" TEXT, "InvalidNodeTypeID" INTEGER, "Mode" TEXT, "Reference" TEXT, "NodeType" TEXT, "NodeDescription" TEXT, "Pattern" TEXT)
CREATE INDEX "By_Node_TABLE" ON "Node_TABLE" ("ConfigID", "PartID")
CREATE TABLE "Node_NIS" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeTypeID" INTEGER, "NodeNumber" INTEGER, "EmptyBuffer" TEXT, "NumberOfDigits" INTEGER, "TerminatingDigit" TEXT, "DigitTimeout" TEXT, "SelectionTimeout" TEXT, "NodeType" TEXT, "NodeDescription" TEXT)
CREATE INDEX "By_Node_NIS" ON "Node_NIS" ("ConfigID", "PartID")
CREATE TABLE "Node_DBN" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeNumber" INTEGER, "NodeTypeID" INTEGER, "NodeDescription" TEXT, "NodeType" TEXT, "Method" TEXT, "DirectoryNodeNumber" INTEGER, "FirstLanguage" TEXT, "SecondLanguage" TEXT, "GreetingNodeType" TEXT, "GreetingNodeNumber" INTEGER, "GreetingNodeTypeID" INTEGER, "ValidMatchNodeType" TEXT, "ValidMatchNodeNumber" INTEGER, "ValidMatchNodeTypeID" INTEGER, "AbortNodeType" TEXT, "AbortNodeNumber" INTEGER, "AbortNodeTypeID" INTEGER, "StarNodeType" TEXT, "StarNodeNumber" INTEGER, "StarNodeTypeID" INTEGER, "PoundNodeType" TEXT, "PoundNodeNumber" INTEGER, "PoundNodeTypeID" INTEGER, "ZeroNodeType" TEXT, "ZeroNodeNumber" INTEGER, "ZeroNodeTypeID" INTEGER, "FirstMode" TEXT, "FirstMinDigits" TEXT, "FirstMaxDigits" TEXT, "FirstPromptNodeType" TEXT, "FirstPromptNodeNumber" INTEGER, "FirstPromptNodeTypeID" INTEGER, "SecondMode" TEXT, "SecondMinDigits" TEXT, "SecondMaxDigits" TEXT, "SecondPromptNodeType" TEXT, "SecondPromptNodeNumber" INTEGER, "SecondPromptNodeTypeID" INTEGER, "TimeoutNodeType" TEXT, "TimeoutNodeNumber" INTEGER, "TimeoutNodeTypeID" INTEGER, "InvalidNodeType" TEXT, "InvalidNodeNumber" INTEGER, "InvalidNodeTypeID" INTEGER, "DigitTimeout" TEXT, "SelectionTimeout" TEXT, "RetryLimit" TEXT, "Confirm" TEXT, "MaxMatch" TEXT, "PlayName" TEXT, "BeforePromptNodeType" TEXT, "BeforePromptNodeNumber" INTEGER, "BeforePromptNodeTypeID" INTEGER, "AfterPromptNodeType" TEXT, "AfterPromptNodeNumber" INTEGER, "AfterPromptNodeTypeID" INTEGER, "ConfirmationExitNodeType" TEXT, "ConfirmationExitNodeNumber" INTEGER, "ConfirmationExitNodeTypeID" INTEGER)
CREATE INDEX "By_Node_DBN" ON "Node_DBN" ("ConfigID", "PartID")
CREATE TABLE "Node_DIR" ("ConfigID" INTEGER, "PartID" INTEGER, "NodeNumber" INTEGER, "NodeTypeID" INTEGER, "NodeDescription" TEXT, "NodeType" TEXT, "AccessCode" TEXT, "UsePasswords" TEXT, "StartingPromptNumber" INTEGER)
CREATE INDEX "By_Node_DIR" ON "Node_DIR" ("ConfigID", "PartID")
CREATE TABLE "STYLE_Blind" ("ConfigID" INTEGER, "PartID" INTEGER, "StyleID" INTEGER, "SuperviseID" INTEGER)
CREATE INDEX "By_STYLE_Blind" ON "STYLE_Blind" ("ConfigID", "PartID")
CREATE TABLE "STYLE_DialCont" ("ConfigID" INTEGER, "PartID" INTEGER, "StyleID" INTEGER, "SuperviseID" INTEGER, "Retrieve" TEXT, "BusyRetry" TEXT, "NumberRetries" INTEGER, "RingLimit" TEXT, "BusyOn" TEXT, "BusyOff" TEXT, "RingOn" TEXT, "RingOff" TEXT)
CREATE INDEX "By_STYLE_DialCont" ON "STYLE_DialCont" ("ConfigID", "PartID")
CREATE TABLE "STYLE_Partial" ("ConfigID" INTEGER, "PartID" INTEGER, "StyleID" INTEGER, "SuperviseID" INTEGER, "Retrieve" TEXT, "BusyRetry" TEXT, "NumberRetries" INTEGER, "RingLimit" TEXT, "BusyOn" TEXT, "BusyOff" TEXT, "RingOn" TEXT, "RingOff" TEXT)
CREATE INDEX "By_STYLE_Partial" ON "STYLE_Partial" ("ConfigID", "PartID")
CREATE TABLE "STYLE_Full" ("ConfigID" INTEGER, "PartID" INTEGER, "StyleID" INTEGER, "SuperviseID" INTEGER, "Retrieve" TEXT, "BusyRetry" TEXT, "NumberRetries" INTEGER, "RingLimit" TEXT, "BusyOn" TEXT, "BusyOff" TEXT, "RingOn" TEXT, "RingOff" TEXT)
CREATE INDEX "By_STYLE_Full" ON "STYLE_Full" ("ConfigID", "PartID")
CREATE TABLE "STYLE_Enhanced" ("ConfigID" INTEGER, "PartID" INTEGER, "StyleID" INTEGER, "SuperviseID" INTEGER, "Retrieve" TEXT, "BusyRetry" TEXT, "NumberRetries" INTEGER, "RingLimit" TEXT, "Busy1On" TEXT, "Busy2On" TEXT, "RingOn" TEXT, "RingOff" TEXT)
CREATE INDEX "By_STYLE_Enhanced" ON "STYLE_Enhanced" ("ConfigID", "PartID")
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "Line" INTEGER
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "Calls" INTEGER
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "Answered" INTEGER
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "Busy" INTEGER
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "NoAnswer" INTEGER
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "SecondsInUse" INTEGER
ALTER TABLE "Stats_Line_Call_Counts" ADD COLUMN "LongestCall" INTEGER
ALTER TABLE "Stats_Line_XFER_Counts" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Line_XFER_Counts" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Line_XFER_Counts" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Line_XFER_Counts" ADD COLUMN "Line" INTEGER
ALTER TABLE "Stats_Line_XFER_Counts" ADD COLUMN "Transfers" INTEGER
ALTER TABLE "Stats_Simultaneous_Lines_Active" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Simultaneous_Lines_Active" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Simultaneous_Lines_Active" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Simultaneous_Lines_Active" ADD COLUMN "LinesActive" INTEGER
ALTER TABLE "Stats_Simultaneous_Lines_Active" ADD COLUMN "Times" INTEGER
ALTER TABLE "Stats_Simultaneous_Lines_Active" ADD COLUMN "Seconds" INTEGER
ALTER TABLE "Stats_Node_Access" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Node_Access" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Node_Access" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Node_Access" ADD COLUMN "NodeType" TEXT
ALTER TABLE "Stats_Node_Access" ADD COLUMN "NodeNumber" INTEGER
ALTER TABLE "Stats_Node_Access" ADD COLUMN "NodeDescription" TEXT
ALTER TABLE "Stats_Node_Access" ADD COLUMN "Accesses" INTEGER
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "NodeType" TEXT
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "NodeNumber" INTEGER
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "Selections" INTEGER
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "InvalidTries" INTEGER
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "TimedOut" INTEGER
ALTER TABLE "Stats_Selections_Made" ADD COLUMN "Aborted" INTEGER
ALTER TABLE "Stats_Auto_Selection_Counts" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Auto_Selection_Counts" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Auto_Selection_Counts" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Auto_Selection_Counts" ADD COLUMN "NodeNumber" INTEGER
ALTER TABLE "Stats_Auto_Selection_Counts" ADD COLUMN "Choice" TEXT
ALTER TABLE "Stats_Auto_Selection_Counts" ADD COLUMN "Selections" INTEGER
ALTER TABLE "Stats_DTMF_Selection_Counts" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_DTMF_Selection_Counts" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_DTMF_Selection_Counts" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_DTMF_Selection_Counts" ADD COLUMN "NodeNumber" INTEGER
ALTER TABLE "Stats_DTMF_Selection_Counts" ADD COLUMN "Choice" TEXT
ALTER TABLE "Stats_DTMF_Selection_Counts" ADD COLUMN "Selections" INTEGER
ALTER TABLE "Stats_VOX_Selection_Counts" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_VOX_Selection_Counts" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_VOX_Selection_Counts" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_VOX_Selection_Counts" ADD COLUMN "NodeNumber" INTEGER
ALTER TABLE "Stats_VOX_Selection_Counts" ADD COLUMN "Choice" TEXT
ALTER TABLE "Stats_VOX_Selection_Counts" ADD COLUMN "Selections" INTEGER
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "NodeNumber" INTEGER
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "Choice" TEXT
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "LeadsToNodeType" TEXT
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "LeadsToNodeNumber" INTEGER
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "FirstTry" INTEGER
ALTER TABLE "Stats_Detail_Auto" ADD COLUMN "LaterTries" INTEGER
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "NodeNumber" INTEGER
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "Choice" TEXT
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "LeadsToNodeType" TEXT
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "LeadsToNodeNumber" INTEGER
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "FirstTry" INTEGER
ALTER TABLE "Stats_Detail_DTMF" ADD COLUMN "LaterTries" INTEGER
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "SiteID" INTEGER
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "CountedSince" TEXT
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "CountedUntil" TEXT
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "NodeNumber" INTEGER
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "Choice" TEXT
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "LeadsToNodeType" TEXT
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "LeadsToNodeNumber" INTEGER
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "FirstTry" INTEGER
ALTER TABLE "Stats_Detail_VOX" ADD COLUMN "LaterTries" INTEGER
PRAGMA application_id = 1364611651
PRAGMA user_version = 2
