#pragma once

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/text.h"
#include "jobs/job_index.h"

namespace qvrcom::jobs {

// The index operations the slow way: read, change one line, rewrite, sort by exchange, again for each line.
struct NaiveIndex {
  std::map<std::string, std::string> files;
  std::set<std::string> job_folders;

  std::vector<std::string> lines(const std::string& name) {
    std::istringstream text(files[name]);
    std::vector<std::string> all;
    for (std::string line; std::getline(text, line); all.push_back(line))
      if (line.ends_with('\r')) line.pop_back();
    return all;
  }

  void sort(const std::string& name) {
    std::vector<std::string> kept = lines(name);
    std::erase(kept, "");
    for (std::size_t i = 0; i + 1 < kept.size(); ++i)
      for (std::size_t j = 0; j + 1 < kept.size() - i; ++j)
        if (kept[j] > kept[j + 1]) std::swap(kept[j], kept[j + 1]);
    std::string text;
    for (const std::string& line : kept)
      text += (&line == &kept.front() ? "" : "\r\n") + line;
    files[name] = std::string(base::trim(text)) + "\r\n";
  }

  void remove(const std::string& name, const std::string& line) {
    std::string text;
    for (const std::string& each : lines(name))
      if (!each.empty() && base::to_upper(each) != base::to_upper(line)) text += each + "\r\n";
    files[name] = text + "\r\n";
    sort("index.sch");
  }

  void validate() {
    std::vector<std::string> gone;
    for (const std::string& line : lines("index.sch")) {
      const std::string folder = JobIndex::Get_Folder(line);
      if (!folder.empty() && !job_folders.contains(folder)) gone.push_back(line);
    }
    for (const std::string& line : gone)
      remove("index.sch", line);
  }

  void move(const std::string& source, const std::string& target) {
    for (const std::string& line : lines(source)) {
      bool held = base::trim(line).empty();
      for (const std::string& each : lines(target))
        held = held || base::trim(each) == base::trim(line);
      if (!held) {
        files[target] += line + "\r\n";
        sort(target);
      }
      remove("index.sch", line);
    }
  }
};

// A small index of lines that differ in blanks, letter case and job, with empty lines and both line ends.
template <class Random>
std::string random_index(Random& random) {
  const char* const pool[] = {"1;^;S:\\A\\A.scr;",
                              "1;^;S:\\a\\A.scr;",
                              " 1;^;S:\\A\\A.scr;",
                              "1;^;S:\\A\\A.scr; ",
                              "2;^;S:\\B\\B.scr;",
                              "  2;x",
                              "3",
                              "",
                              " ",
                              "  ",
                              "10;;",
                              "B "};
  std::string text;
  for (auto left = random() % 7; left > 0; --left)
    text.append(pool[random() % std::size(pool)]).append(random() % 2 == 0 ? "\n" : "\r\n");
  return text;
}

}  // namespace qvrcom::jobs
