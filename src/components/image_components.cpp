#include "components/image_components.h"

#include <string_view>

#include "components/component_registry.h"
#include "components/configuration_rows.h"
#include "components/statistics_rows.h"
#include "devicefiles/sections.h"

namespace qvrcom::components {
namespace {

using environment::DatabaseConnection;
using Arguments = std::span<const std::string>;

// Every generation's device files are read alike.
constexpr const char* kGenerations[] = {"5_0", "5_1", "5_2", "6_0", "6_1", "6_3", "7_0", "7_1", "7_2"};

// What the operations work with.
struct Workshop {
  DatabaseConnection* connection;
  const platform::Files* files;

  std::string read(const std::string& path) const {
    if (const std::uint64_t length = files->length(path); length > devicefiles::kLargestFile) {
      throw base::Fault("Not a device file", "It has " + std::to_string(length) + " bytes, more than " +
                                                 std::to_string(devicefiles::kLargestFile) + ".");
    }
    return files->read(path);
  }
};

std::string name_of(const std::string& path) {
  return path.substr(path.rfind('\\') + 1);
}

// A file fetched under the wrong account must not count for the partition that was asked for.
void check_partition(std::uint32_t found, const PartitionKey& key) {
  if (std::to_string(found) == key.partition) return;
  throw base::Fault("It is of another partition",
                    "It holds partition " + std::to_string(found) + ", not " + key.partition + ".");
}

// A file of statistics that cannot be read takes the rows of the file before it along: they must not pass for
// its contents.
using Forget = void (*)(platform::Database&, const PartitionKey&);

// "OK" after `store` has put what `read` made of the last argument's file under configuration and partition,
// the first two arguments. `forget` runs when that failed.
template <class Read, class Store>
std::optional<std::string> decode(
    const Workshop& shop, Arguments arguments, Read read, Store store,
    Forget forget = [](platform::Database&, const PartitionKey&) {}) {
  return answer(name_of(arguments.back()), [&] {
    const PartitionKey key = partition_key(arguments[0], arguments[1]);
    const auto fault = base::fault_of([&] {
      const auto decoded = read(shop.read(arguments.back()));
      check_partition(decoded.partition, key);
      store(shop.connection->database(), key, decoded);
    });
    if (!fault) return std::string("OK");
    forget(shop.connection->database(), key);
    throw *fault;
  });
}

std::vector<Operation> system_operations(const Workshop& shop) {
  return {{"DecodeSystemImage", 2, [shop](Arguments arguments) {
             return answer(name_of(arguments[1]), [&] {
               const std::string configuration = configuration_number(arguments[0]);
               const auto image = devicefiles::read_system_image(shop.read(arguments[1]));
               store_system_image(shop.connection->database(), configuration, image);
               return std::string("OK");
             });
           }}};
}

std::vector<Operation> partition_operations(const Workshop& shop) {
  return {{"DecodePartitionImage", 4,
           [shop](Arguments arguments) {
             return decode(shop, arguments, devicefiles::read_partition_image, store_partition_image);
           }},
          {"DecodeLineStats", 3,
           [shop](Arguments arguments) {
             return decode(shop, arguments, devicefiles::read_line_statistics, store_line_statistics,
                           remove_line_statistics);
           }},
          {"DecodeNodeStats", 3, [shop](Arguments arguments) {
             return decode(shop, arguments, devicefiles::read_node_statistics, store_node_statistics,
                           remove_node_statistics);
           }}};
}

void add(ComponentRegistry& registry, const std::string& name, const std::vector<Operation>& operations) {
  registry.add(name, [name, operations] { return std::make_unique<TableComponent>(name, operations); });
}

}  // namespace

void add_image_components(ComponentRegistry& registry, DatabaseConnection& connection,
                          const platform::Files& files) {
  const Workshop shop{&connection, &files};
  for (const char* generation : kGenerations) {
    const std::string name = std::string("QVRBIN") + generation;
    add(registry, name + ".Sys", system_operations(shop));
    add(registry, name + ".Part", partition_operations(shop));
  }
}

}  // namespace qvrcom::components
