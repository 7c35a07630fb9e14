#include "environment/device_tables.h"

#include <array>

#include "base/text.h"

namespace qvrcom::environment {
namespace {

using enum TableKind;

constexpr unsigned kAll = kDelete | kGet | kDuplicate;

constexpr auto kTables = std::to_array<DeviceTable>({
    {kStatistics, "Stats_Auto_Selection_Counts", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_Detail_Auto", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_Detail_DTMF", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_Detail_VOX", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_DTMF_Selection_Counts", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_Line_Call_Counts", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_Line_XFER_Counts", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_Node_Access", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_Selections_Made", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_Simultaneous_Lines_Active", kDelete, "ConfigID PartitionID"},
    {kStatistics, "Stats_VOX_Selection_Counts", kDelete, "ConfigID PartitionID"},
    {kDetail, "Detail_CMD", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType"},
    {kDetail, "Detail_TIME", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType"},
    {kDetail, "Detail_DATE", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType"},
    {kDetail, "Detail_DTMF_Action", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType DTMFDigitCollected"},
    {kDetail, "Detail_DTMF_Prompts", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType"},
    {kDetail, "Detail_VOX_Action", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType PromptNodeNumber "
     "PromptNodeType PromptNodeTypeID"},
    {kDetail, "Detail_VOX_Prompts", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType"},
    {kDetail, "Detail_LIST", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType"},
    {kDetail, "Detail_AUTO_Action", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType DTMFRangeHigh DTMFRangeLow"},
    {kDetail, "Detail_AUTO_Prompts", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType"},
    {kDetail, "Detail_TABLE_Action", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType EndRange StartRange"},
    {kDetail, "Detail_PAAS", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType"},
    {kDetail, "Detail_TABLE_Action_NIS_Match", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeTypeID NodeNumber NodeMasterID NodeType Match"},
    {kDetail, "Detail_DBN_Prompts", kDelete | kDuplicate,
     "ConfigID PartID NodeMasterID PromptNumber PromptNodeTypeID PromptNodeType PromptNodeNumber"},
    {kDetail, "Detail_DIR", kDelete | kDuplicate,
     "ConfigID PartID SequenceNo NodeMasterID LastName FirstName Extension NamePrompt Password"},
    {kNode, "Node_General_Pool", kDelete, "ConfigID PartID"},
    {kNode, "Node_MSG", kAll,
     "ConfigID PartID NodeTypeID NodeNumber MaxLength OnOff DTMF Password Directory QVRFilename Comment "
     "SkipCount Permission WarningTone LineAssignment NodeType NodeDescription MSGArchive"},
    {kNode, "Node_CMD", kAll, "ConfigID PartID NodeTypeID NodeNumber NodeType NodeDescription"},
    {kNode, "Node_TIME", kAll,
     "ConfigID PartID NodeTypeID NodeNumber StartTime StopTime NodeType NodeDescription"},
    {kNode, "Node_DATE", kAll,
     "ConfigID PartID NodeTypeID NodeNumber Mode StartDate StartDay StopDate StopDay NodeType "
     "NodeDescription"},
    {kNode, "Node_XFER", kAll,
     "ConfigID PartID NodeTypeID NodeNumber AnswerNodeNumber AnswerNodeType Busy1NodeNumber "
     "Busy1NodeType Busy2NodeNumber Busy2NodeType Dial HoldNodeNumber HoldNodeType MOHNodeNumber "
     "MOHNodeType NoAnswerNodeNumber NoAnswerNodeType StyleNodeNumber NodeType NodeDescription"},
    {kNode, "Node_STYLE", kAll,
     "ConfigID PartID NodeTypeID NodeNumber Disconnection Hookflash SuperviseID SuperviseType "
     "ThresholdTypeID Transfer NodeType NodeDescription"},
    {kNode, "Node_DTMF", kAll,
     "ConfigID PartID NodeTypeID NodeNumber AbortNodeNumber AbortNodeType AbortNodeTypeID DigitTimeout "
     "DTMFClear InvalidNodeNumber InvalidNodeType InvalidNodeTypeID NumberOfDigits RetryLimit "
     "SelectionTimeout TerminatingDigit TimeoutNodeNumber TimeoutNodeType TimeoutNodeTypeID NodeType "
     "NodeDescription"},
    {kNode, "Node_VOX", kAll,
     "ConfigID PartID NodeTypeID NodeNumber AbortNodeNumber AbortNodeType AbortNodeTypeID Beep "
     "DTMFNodeNumber DTMFNodeType DTMFNodeTypeID RetryLimit Threshold TimeoutNodeNumber TimeoutNodeType "
     "TimeoutNodeTypeID Wait NodeType NodeDescription"},
    {kNode, "Node_LIST", kAll, "ConfigID PartID NodeTypeID NodeNumber ListMode NodeType NodeDescription"},
    {kNode, "Node_AUTO", kAll,
     "ConfigID PartID NodeTypeID NodeNumber AbortNodeNumber AbortNodeType AbortNodeTypeID DigitTimeout "
     "InvalidNodeNumber InvalidNodeType InvalidNodeTypeID NumberOfDigits PoundNodeNumber PoundNodeType "
     "PoundNodeTypeID RetryLimit SelectionTimeout StarNodeNumber StarNodeType StarNodeTypeID "
     "TerminatingDigit TimeoutNodeNumber TimeoutNodeType TimeoutNodeTypeID NodeType NodeDescription"},
    {kNode, "Node_MOH", kAll,
     "ConfigID PartID NodeTypeID NodeNumber FadeTime IOSourceLinesID IOSourceLinesNumber "
     "IOSourceLinesType MusicLevel MusicNodeNumber MusicNodeType VoiceNodeNumber VoiceNodeType NodeType "
     "NodeDescription"},
    {kNode, "Node_PAAS", kAll,
     "ConfigID PartID NodeTypeID NodeNumber Card Interrupt Line Priority NodeType NodeDescription"},
    {kNode, "Node_TABLE", kAll,
     "ConfigID PartID NodeTypeID NodeNumber ContinueNodeNumber ContinueNodeType ContinueNodeTypeID "
     "InvalidNodeNumber InvalidNodeType InvalidNodeTypeID Mode Reference NodeType NodeDescription "
     "Pattern"},
    {kNode, "Node_NIS", kAll,
     "ConfigID PartID NodeTypeID NodeNumber EmptyBuffer NumberOfDigits TerminatingDigit DigitTimeout "
     "SelectionTimeout NodeType NodeDescription"},
    {kNode, "Node_DBN", kAll,
     "ConfigID PartID NodeNumber NodeTypeID NodeDescription NodeType Method DirectoryNodeNumber "
     "FirstLanguage SecondLanguage GreetingNodeType GreetingNodeNumber GreetingNodeTypeID "
     "ValidMatchNodeType ValidMatchNodeNumber ValidMatchNodeTypeID AbortNodeType AbortNodeNumber "
     "AbortNodeTypeID StarNodeType StarNodeNumber StarNodeTypeID PoundNodeType PoundNodeNumber "
     "PoundNodeTypeID ZeroNodeType ZeroNodeNumber ZeroNodeTypeID FirstMode FirstMinDigits "
     "FirstMaxDigits FirstPromptNodeType FirstPromptNodeNumber FirstPromptNodeTypeID SecondMode "
     "SecondMinDigits SecondMaxDigits SecondPromptNodeType SecondPromptNodeNumber "
     "SecondPromptNodeTypeID TimeoutNodeType TimeoutNodeNumber TimeoutNodeTypeID InvalidNodeType "
     "InvalidNodeNumber InvalidNodeTypeID DigitTimeout SelectionTimeout RetryLimit Confirm MaxMatch "
     "PlayName BeforePromptNodeType BeforePromptNodeNumber BeforePromptNodeTypeID AfterPromptNodeType "
     "AfterPromptNodeNumber AfterPromptNodeTypeID ConfirmationExitNodeType ConfirmationExitNodeNumber "
     "ConfirmationExitNodeTypeID"},
    {kNode, "Node_DIR", kAll,
     "ConfigID PartID NodeNumber NodeTypeID NodeDescription NodeType AccessCode UsePasswords "
     "StartingPromptNumber"},
    {kStyle, "STYLE_Blind", kDelete | kDuplicate, "ConfigID PartID StyleID SuperviseID"},
    {kStyle, "STYLE_DialCont", kDelete | kDuplicate,
     "ConfigID PartID StyleID SuperviseID Retrieve BusyRetry NumberRetries RingLimit BusyOn BusyOff "
     "RingOn RingOff"},
    {kStyle, "STYLE_Partial", kDelete | kDuplicate,
     "ConfigID PartID StyleID SuperviseID Retrieve BusyRetry NumberRetries RingLimit BusyOn BusyOff "
     "RingOn RingOff"},
    {kStyle, "STYLE_Full", kDelete | kDuplicate,
     "ConfigID PartID StyleID SuperviseID Retrieve BusyRetry NumberRetries RingLimit BusyOn BusyOff "
     "RingOn RingOff"},
    {kStyle, "STYLE_Enhanced", kDelete | kDuplicate,
     "ConfigID PartID StyleID SuperviseID Retrieve BusyRetry NumberRetries RingLimit Busy1On Busy2On "
     "RingOn RingOff"},
});

}  // namespace

const std::string_view kSettingsColumns =
    "ConfigID StartNodeType StartNodeNumber PartitionID LineAssignment CardVariant CountryCode "
    "RemoteModeType RemoteModeNumber MsgType PartitionEnabled MaxPartitionNo FrontPanelAccess "
    "ModemAccess Machine_Type_ID ControlCardType Embedded_Remote_Line ModemCountryCode Impedance";

std::span<const DeviceTable> device_tables() {
  return kTables;
}

std::vector<std::string_view> column_list(std::string_view columns) {
  return base::split(columns, " ");
}

}  // namespace qvrcom::environment
