#include "jobs/script_writer.h"

#include "base/text.h"
#include "protocol/job_name.h"

namespace qvrcom::jobs {

void ScriptWriter::Create_Dir() {
  trap_("Create_Dir", [&] {
    job_.Name = protocol::job_name(job_.SessionStart, job_.Suffix);
    job_.Folder = scheduler_.path(job_.Name);
    if (!helpers_.ExistedFolder(job_.Folder, {})) files_.make_folder(job_.Folder);
  });
}

void ScriptWriter::Write_Script_Header(const protocol::ScriptHeader& header) {
  print("Write_Script_Header", protocol::header_text(header, protocol::ScriptKind::kTransfer));
}

void ScriptWriter::Write_Script_Header(const protocol::ScriptHeader& header, TelnetSession) {
  print("Write_Script_Header", protocol::header_text(header, protocol::ScriptKind::kTelnet));
}

void ScriptWriter::Write_Script(const std::string& text) {
  print("Write_Script", text);
}

void ScriptWriter::Write_Script_End() {
  print("Write_Script_End", "FTPDISCONNECT;");
}

void ScriptWriter::clear_password(const std::string& folder) {
  trap_("clear_password", [&] {
    const std::string path = protocol::job_file(folder, protocol::kScriptExtension);
    if (folder.empty() || !files_.file_exists(path) || files_.length(path) > protocol::kScriptLimit) return;
    const std::string text = files_.read(path);
    const std::string cleared = protocol::without_password(text);
    if (cleared != text) files_.replace(path, cleared);
  });
}

void ScriptWriter::print(const std::string& procedure, const std::string& text) {
  trap_(procedure,
        [&] { files_.append(protocol::script_path(job_.Folder), text + std::string(base::kCrLf)); });
}

}  // namespace qvrcom::jobs
