// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyList.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Property lists for tests.
namespace hushmode::devices::samples {

inline std::string xml(std::string_view content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + std::string(content) +
         "\n</plist>\n";
}

inline std::string bigEndian(std::uint64_t number, int size) {
  std::string bytes;
  for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFF);
  return bytes;
}

/// A binary property list of `objects`, each as its bytes stand in the file; the first is the top object.
inline std::string binary(const std::vector<std::string>& objects, int referenceSize = 1) {
  constexpr int kOffsetSize = 4;
  std::string bytes = "bplist00", table;
  for (const std::string& object : objects) {
    table += bigEndian(bytes.size(), kOffsetSize);
    bytes += object;
  }
  const std::size_t tableOffset = bytes.size();
  return bytes + table + std::string(6, '\0') + bigEndian(kOffsetSize, 1) + bigEndian(referenceSize, 1) +
         bigEndian(objects.size(), 8) + bigEndian(0, 8) + bigEndian(tableOffset, 8);
}

/// One value of each kind, in a dictionary in an array.
inline platform::Value everyKind() {
  using namespace platform;
  return Array{Dictionary{
      {"title", "B\u00fcro \u2615"},
      {"on", true},
      {"off", false},
      {"n", -7},
      {"big", std::int64_t{1} << 40},
      {"r", 0.1},
      {"d", Date(1'715'677'200)},
      {"data", Data{std::byte{0}, std::byte{0xFF}, std::byte{0x10}}},
      {"list", Array{"one", 2}},
      {"empty", Dictionary()},
      {"long", "a text of more than fifteen characters"},
  }};
}

/// The same as a binary file of another program.
inline std::string everyKindBinary() {
  constexpr std::string_view kHex =
      "62706c6973743030a101db02030405060708090a0b0c0d0e0f1011121314151819557469746c65526f6e536f6666516e5362696751725164"
      "54"
      "64617461546c69737455656d707479546c6f6e6766004200fc0072006f00202615090813fffffffffffffff9130000010000000000233fb9"
      "99"
      "999999999a3341c5f9afc80000004300ff10a21617536f6e651002d05f1026612074657874206f66206d6f7265207468616e206669667465"
      "65"
      "6e2063686172616374657273080a21272a2e303436383d42484d5a5b5c656e778084878b8d8e0000000000000101000000000000001a0000"
      "00"
      "000000000000000000000000b7";
  std::string bytes;
  for (std::size_t i = 0; i < kHex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(std::string(kHex.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

}  // namespace hushmode::devices::samples
