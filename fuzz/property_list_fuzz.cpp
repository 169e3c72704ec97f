// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Any bytes as a property list: reading them must not crash, and what was read must survive being written and read
// again.
//
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -I. fuzz/property_list_fuzz.cpp \
//     devices/shared/PropertyList*.cpp platform/PropertyList.cpp $(pkg-config --cflags --libs libplist-2.0)

#include "devices/shared/PropertyListCodec.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace hushmode::devices;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Shared values make large lists of small files; a small limit keeps each input quick.
  const PropertyListLimits limits{.bytes = 1 << 20, .depth = 64, .values = 10'000};
  const auto first = parsePropertyList(std::string_view(reinterpret_cast<const char*>(data), size), limits);
  require(first.value.has_value() == first.error.empty());
  if (!first) {
    // What passes the checks, libplist reads.
    require(first.error != "expected a property list, found what libplist cannot read");
    return 0;
  }
  const auto written = serializeXml(*first.value);
  require(written.value.has_value());
  const auto second = parsePropertyList(*written.value);
  require(second.value.has_value());
  // Texts, not values, are compared: a value that is not a number is not equal to itself.
  require(serializeXml(*second.value).value == written.value);
  return 0;
}
