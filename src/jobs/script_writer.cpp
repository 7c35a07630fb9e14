#include "jobs/script_writer.h"

#include "base/text.h"
#include "jobs/job_name.h"

namespace qvrcom::jobs {

void ScriptWriter::Create_Dir() {
  trap_("Create_Dir", [&] {
    job_.Name = job_name(job_);
    job_.Folder = scheduler_.path(job_.Name);
    if (!helpers_.ExistedFolder(job_.Folder, {})) files_.make_folder(job_.Folder);
  });
}

void ScriptWriter::Write_Script_Header(const ScriptHeader& header) {
  print("Write_Script_Header", header_text(header, ScriptKind::kTransfer));
}

void ScriptWriter::Write_Script_Header(const ScriptHeader& header, TelnetSession) {
  print("Write_Script_Header", header_text(header, ScriptKind::kTelnet));
}

void ScriptWriter::Write_Script(const std::string& text) {
  print("Write_Script", text);
}

void ScriptWriter::Write_Script_End() {
  print("Write_Script_End", "FTPDISCONNECT;");
}

void ScriptWriter::clear_password(const std::string& folder) {
  trap_("clear_password", [&] {
    const std::string path = job_file(folder, kScriptExtension);
    if (folder.empty() || !files_.file_exists(path) || files_.length(path) > kScriptLimit) return;
    const std::string text = files_.read(path);
    const std::string cleared = without_password(text);
    if (cleared != text) files_.replace(path, cleared);
  });
}

void ScriptWriter::print(const std::string& procedure, const std::string& text) {
  trap_(procedure, [&] { files_.append(script_path(job_), text + std::string(base::kCrLf)); });
}

}  // namespace qvrcom::jobs
