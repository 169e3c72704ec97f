// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListCodec.h"

#include "devices/shared/PropertyListBinaryCheck.h"
#include "devices/shared/PropertyListScalar.h"
#include "devices/shared/PropertyListText.h"
#include "devices/shared/PropertyListXmlCheck.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <locale.h>
#include <memory>
#include <plist/plist.h>
#include <stdexcept>
#include <unordered_set>

namespace hushmode::devices {

namespace {

using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::Value;

struct NodeFree {
  void operator()(void* node) const { plist_free(node); }
};
/// A libplist node and all below it.
using Node = std::unique_ptr<void, NodeFree>;

struct MallocFree {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Malloced = std::unique_ptr<T, MallocFree>;

/// While it lives, this thread writes and reads numbers with a decimal point, whatever the process's locale: libplist
/// follows the locale.
class DecimalPoint {
 public:
  DecimalPoint() : previous_(uselocale(plainLocale())) {}
  ~DecimalPoint() { uselocale(previous_); }
  DecimalPoint(const DecimalPoint&) = delete;
  DecimalPoint& operator=(const DecimalPoint&) = delete;

 private:
  static locale_t plainLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t{});
    return locale;
  }
  locale_t previous_;
};

// From libplist's nodes to values.

Value valueOf(plist_t node);

/// Puts entries into a dictionary whose keys may come twice.
class DictionaryBuilder {
 public:
  explicit DictionaryBuilder(std::size_t count) { dictionary_.reserve(count); }

  void add(std::string key, Value value) {
    // Few keys are found faster one after the other than in a table.
    constexpr std::size_t kFew = 32;
    if (dictionary_.size() >= kFew) return addToMany(std::move(key), std::move(value));
    dictionary_.set(key, std::move(value));
  }
  Dictionary finished() { return std::move(dictionary_); }

 private:
  void addToMany(std::string key, Value value) {
    if (seen_.empty()) {
      for (const auto& entry : dictionary_) seen_.insert(entry.key);
    }
    if (seen_.insert(key).second) {
      dictionary_.append(std::move(key), std::move(value));
    } else {
      dictionary_.set(key, std::move(value));
    }
  }

  Dictionary dictionary_;
  std::unordered_set<std::string> seen_;
};

Array arrayOf(plist_t node) {
  Array array;
  array.reserve(plist_array_get_size(node));
  plist_array_iter iterator = nullptr;
  plist_array_new_iter(node, &iterator);
  const Malloced<void> owned(iterator);
  for (plist_t item = nullptr; plist_array_next_item(node, iterator, &item), item;) array.push_back(valueOf(item));
  return array;
}

Dictionary dictionaryOf(plist_t node) {
  DictionaryBuilder builder(plist_dict_get_size(node));
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(node, &iterator);
  const Malloced<void> owned(iterator);
  while (true) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, iterator, &key, &item);
    const Malloced<char> ownedKey(key);
    if (!item) return builder.finished();
    builder.add(key, valueOf(item));
  }
}

Date dateOf(plist_t node) {
  std::int32_t seconds = 0, microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  // Before the epoch the fraction leads further back.
  const double fraction = microseconds / 1e6;
  return Date(static_cast<double>(kPropertyListEpoch + seconds) + (seconds < 0 ? -fraction : fraction));
}

std::string stringOf(plist_t node) {
  std::uint64_t length = 0;
  const char* text = plist_get_string_ptr(node, &length);
  return text ? std::string(text, length) : std::string();
}

Data dataOf(plist_t node) {
  std::uint64_t length = 0;
  const auto* bytes = reinterpret_cast<const std::byte*>(plist_get_data_ptr(node, &length));
  return bytes ? Data(bytes, bytes + length) : Data();
}

/// `node` is of a type that the checks of the bytes let through.
Value valueOf(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
      return plist_bool_val_is_true(node) != 0;
    case PLIST_UINT: {
      std::uint64_t number = 0;
      plist_get_uint_val(node, &number);
      return static_cast<std::int64_t>(number);
    }
    case PLIST_REAL: {
      double number = 0;
      plist_get_real_val(node, &number);
      return number;
    }
    case PLIST_STRING:
      return stringOf(node);
    case PLIST_DATE:
      return dateOf(node);
    case PLIST_DATA:
      return dataOf(node);
    case PLIST_ARRAY:
      return arrayOf(node);
    case PLIST_DICT:
      return dictionaryOf(node);
    default:
      throw std::logic_error("a property-list node of type " + std::to_string(plist_get_node_type(node)));
  }
}

// From values to libplist's nodes.

/// Makes nodes of values; keeps count of what a reader would count.
class NodeWriter {
 public:
  /// Null when the limits are exceeded.
  Node node(const Value& value) {
    if (++values_ > limits_.values) return nullptr;
    return std::visit([this](const auto& content) { return make(content); }, value.variant());
  }

 private:
  static Node make(bool boolean) { return Node(plist_new_bool(boolean)); }
  static Node make(std::int64_t integer) { return Node(plist_new_uint(static_cast<std::uint64_t>(integer))); }
  static Node make(double real) { return Node(plist_new_real(real)); }
  static Node make(const std::string& text) {
    const bool isClean = xmlTextLength(text) == text.size();
    return Node(plist_new_string(isClean ? text.c_str() : asXmlText(text).c_str()));
  }
  static Node make(const Data& data) {
    return Node(plist_new_data(reinterpret_cast<const char*>(data.data()), data.size()));
  }
  static Node make(Date date) {
    double seconds = std::floor(date.secondsSince1970());
    if (std::isnan(seconds)) seconds = 0;
    seconds = std::clamp(seconds, static_cast<double>(kFirstPropertyListSecond),
                         static_cast<double>(kLastPropertyListSecond));
    return Node(plist_new_date(static_cast<std::int32_t>(static_cast<std::int64_t>(seconds) - kPropertyListEpoch), 0));
  }
  Node make(const Array& array) {
    Node list(plist_new_array());
    if (depth_ == limits_.depth) return nullptr;
    ++depth_;
    for (const Value& value : array) {
      Node item = node(value);
      if (!item) return nullptr;
      plist_array_append_item(list.get(), item.release());
    }
    --depth_;
    return list;
  }
  Node make(const Dictionary& dictionary) {
    Node dict(plist_new_dict());
    if (depth_ == limits_.depth) return nullptr;
    ++depth_;
    for (const auto& [key, value] : dictionary) {
      Node item = node(value);
      if (!item) return nullptr;
      const bool isClean = xmlTextLength(key) == key.size();
      plist_dict_set_item(dict.get(), isClean ? key.c_str() : asXmlText(key).c_str(), item.release());
    }
    --depth_;
    return dict;
  }

  PropertyListLimits limits_;
  std::size_t depth_ = 0, values_ = 0;
};

std::string tooLarge(const PropertyListLimits& limits) {
  return tr("larger than a property list may be: {0} bytes, {1} values, {2} levels", limits.bytes, limits.values,
            limits.depth);
}

using Write = decltype(plist_to_xml)*;
using Free = decltype(plist_to_xml_free)*;

PropertyListResult<std::string> serialize(const Value& value, Write write, Free free) {
  const PropertyListLimits limits;
  const Node root = NodeWriter().node(value);
  if (!root) return {std::nullopt, tooLarge(limits)};

  const DecimalPoint decimalPoint;
  char* bytes = nullptr;
  std::uint32_t length = 0;
  write(root.get(), &bytes, &length);
  const std::unique_ptr<char, Free> owned(bytes, free);
  if (!bytes || length > limits.bytes) return {std::nullopt, tooLarge(limits)};
  return {std::string(bytes, length), {}};
}

}  // namespace

PropertyListResult<Value> parsePropertyList(std::string_view bytes, const PropertyListLimits& limits) {
  // libplist counts bytes in 32 bits.
  if (bytes.size() > std::min<std::size_t>(limits.bytes, UINT32_MAX)) {
    return {std::nullopt, tr("expected at most {0} bytes, found {1}", limits.bytes, bytes.size())};
  }
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());

  const bool isBinary = isBinaryPropertyList(bytes);
  const auto fault = isBinary ? binaryPropertyListFault(bytes, limits) : xmlPropertyListFault(bytes, limits);
  if (fault) return {std::nullopt, *fault};

  const DecimalPoint decimalPoint;
  plist_t read = nullptr;
  (isBinary ? plist_from_bin : plist_from_xml)(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &read);
  const Node root(read);
  if (!root) return {std::nullopt, tr("expected a property list, found what libplist cannot read")};
  return {valueOf(root.get()), {}};
}

PropertyListResult<std::string> serializeXml(const Value& value) {
  return serialize(value, plist_to_xml, plist_to_xml_free);
}

PropertyListResult<std::string> serializeBinary(const Value& value) {
  return serialize(value, plist_to_bin, plist_to_bin_free);
}

}  // namespace hushmode::devices
