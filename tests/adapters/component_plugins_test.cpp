#include "adapters/component_plugins.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "adapters/posix_fault.h"
#include "adapters/temporary_suite.h"
#include "doubles/caught.h"

namespace qvrcom::adapters {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct ComponentPluginsTest : testing::Test {
  ComponentPluginsTest() { fs::permissions(folder.path, fs::perms(0700)); }

  std::string put(const std::string& built, const std::string& name) const {
    const std::string path = folder.path + "/" + name;
    fs::copy_file(built.starts_with("/") ? built : QVRCOM_TEST_PLUGINS "/" + built + ".so", path);
    fs::permissions(path, fs::perms(0755));
    return path;
  }
  ComponentPlugins load() const { return load_component_plugins(folder.path); }
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const OfferedComponent& offered : load().components)
      found.push_back(offered.name);
    return found;
  }
  std::unique_ptr<platform::Component> make(const std::string& name) const {
    for (const OfferedComponent& offered : load().components)
      if (offered.name == name) return offered.create();
    return nullptr;
  }

  TemporaryFolder folder;
};

TEST_F(ComponentPluginsTest, LeavesOutWhatCannotBeUsedAndSaysWhy) {
  const struct {
    const char* built;
    const char* why;
  } rows[] = {
      {"newer", "It is made for version 2 of the plug-in interface; this program has version 1."},
      {"stranger", "It is no component plug-in. It has no symbol \"qvrcom_offer_components\"."},
      {"nameless", "Its component 1 has no name."},
      {"callless", "Its component \"Test.One\" cannot be called."},
      {"silent", "It does not say what it offers."},
      {"throwing", "It ended with an exception. On saying what it offers: nobody home"},
  };
  for (const auto& row : rows) {
    const std::string name = std::string(row.built) + ".so";  // a path that is loaded once stays what it was
    const std::string path = put(row.built, name);
    const ComponentPlugins plugins = load();
    EXPECT_THAT(plugins.problems, ElementsAre("The plug-in \"" + name + "\" is not used. " + row.why));
    EXPECT_THAT(plugins.components, IsEmpty()) << row.built;
    fs::remove(path);
  }
}

TEST_F(ComponentPluginsTest, LoadsWhatTheUserAloneCanChange) {
  fs::permissions(put("good", "a-open.so"), fs::perms(0757));
  fs::create_directory(folder.path + "/b-folder.so");
  fs::create_symlink(QVRCOM_TEST_PLUGINS "/good.so", folder.path + "/c-link.so");
  std::ofstream(folder.path + "/d-text.so") << "no library";
  std::ofstream(folder.path + "/readme.txt") << "no library either";
  put("good", "e-good.so");
  EXPECT_THAT(
      load().problems,
      ElementsAre(HasSubstr("\"a-open.so\" is not used. Others may write to it."),
                  HasSubstr("\"b-folder.so\" is not used. It is not a plain file."),
                  HasSubstr("\"c-link.so\" is not used. It is not a plain file."),
                  AllOf(HasSubstr("\"d-text.so\" is not used. It is not a library that can be loaded. "),
                        EndsWith("d-text.so: file too short"))));
  EXPECT_THAT(names(), ElementsAre("Test.One", "Test.Refusing", "Test.Bursting", "QVRStats.Stats"));

  fs::permissions(folder.path, fs::perms(0777));
  EXPECT_THAT(load().problems, ElementsAre(StartsWith("The folder of plug-ins \"" + folder.path +
                                                      "\" is not used. Others may write to it.")));
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(load_component_plugins(folder.path + "/missing").problems, IsEmpty());
}

TEST_F(ComponentPluginsTest, UsesNoneOfTwoWithOneName) {
  put("good", "second.so");
  put("good", "first.so");
  put(QVRCOM_EXAMPLE_PLUGIN, "third.so");
  EXPECT_THAT(names(), ElementsAre("QVRBIN7_2.Sys"));
  const auto problems = load().problems;
  ASSERT_EQ(problems.size(), 4u);
  EXPECT_EQ(
      problems[2],
      "The component \"Test.One\" is offered more than once (\"first.so\", \"second.so\"). None of these "
      "is used. Keep one.");
}

TEST_F(ComponentPluginsTest, CarriesTextsBothWays) {
  put("good", "good.so");
  const auto component = make("Test.One");
  const std::string arguments[] = {"a", "", std::string("zero\0inside", 11), "\xc3\xa4"};
  EXPECT_EQ(component->call("Join", arguments), std::string("a||zero\0inside|\xc3\xa4|", 18));
  EXPECT_EQ(component->call("Join", {}), "");
  EXPECT_EQ(component->call("State", {}), "state");
  EXPECT_EQ(component->call("Nothing", {}), std::nullopt);
  EXPECT_EQ(component->call("Large", {})->size(), 16u * 1024 * 1024);
  { EXPECT_EQ(make("Test.One")->call("Alive", {}), "2"); }
  EXPECT_EQ(component->call("Alive", {}), "1");
}

TEST_F(ComponentPluginsTest, TurnsFailuresIntoFaults) {
  put("good", "good.so");
  const auto component = make("Test.One");
  const std::string of = " of \"Test.One\" of the plug-in \"good.so\"";
  const struct {
    const char* operation;
    std::string fault;
  } rows[] = {
      {"Fail", "The disk is full.: Fail" + of + " ended with code 7."},
      {"FailBadly", "Plug-in failed: FailBadly" + of + " ended with code 7."},
      {"Throw", "Plug-in ended with an exception: Throw" + of + ": out of paper"},
      {"ThrowNumber",
       "Plug-in ended with an exception: ThrowNumber" + of + ": an exception of its own kind."},
      {"Latin1", "Plug-in gave an unusable answer: Latin1" + of + ": it is not UTF-8."},
      {"Larger", "Plug-in gave an unusable answer: Larger" + of + ": it is longer than 16777216 bytes."},
      {"Sing",
       "Object doesn't support this operation: \"Test.One\" of the plug-in \"good.so\" has no "
       "operation \"Sing\"."},
  };
  for (const auto& row : rows)
    EXPECT_EQ(doubles::whole_fault_of([&] { component->call(row.operation, {}); }), row.fault);
  EXPECT_EQ(
      doubles::whole_fault_of([&] { make("Test.Refusing"); }),
      "The licence has expired.: \"Test.Refusing\" of the plug-in \"good.so\" could not be made (code 1).");
  EXPECT_EQ(
      doubles::whole_fault_of([&] { make("Test.Bursting"); }),
      "Plug-in ended with an exception: \"Test.Bursting\" of the plug-in \"good.so\", while it was made: "
      "no room");
}

TEST_F(ComponentPluginsTest, RunsTheExample) {
  put(QVRCOM_EXAMPLE_PLUGIN, "example.so");
  const auto component = make("QVRBIN7_2.Sys");
  const auto decoded = [&](const char* sample) {
    const std::string arguments[] = {"1", suite_path(std::string(QVRCOM_SAMPLES "/system_image/") + sample)};
    return component->call("DecodeSystemImage", arguments);
  };
  EXPECT_EQ(decoded("whole"), "OK");
  EXPECT_EQ(decoded("partition_image"), "The file is not a system image of version 1.");
}

}  // namespace
}  // namespace qvrcom::adapters
