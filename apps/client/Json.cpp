// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/Json.h"

#include "apps/simulation/TimeText.h"

#include <glib.h>
#include <memory>

namespace hushmode::cli {

using devices::TimeZone;
using platform::Value;

namespace {

std::string base64(const platform::Data& data) {
  const std::unique_ptr<char, decltype(&g_free)> text(
      g_base64_encode(reinterpret_cast<const guchar*>(data.data()), data.size()), &g_free);
  return text.get();
}

Json objectOf(const platform::Dictionary& dictionary, const TimeZone& zone) {
  Json object = Json::object();
  for (const auto& [key, value] : dictionary) object[key] = jsonOf(value, zone);
  return object;
}

}  // namespace

Json jsonOf(const Value& value, const TimeZone& zone) {
  struct Visitor {
    const TimeZone& zone;
    Json operator()(bool boolean) const { return boolean; }
    Json operator()(std::int64_t integer) const { return integer; }
    Json operator()(double real) const { return real; }
    Json operator()(const std::string& text) const { return text; }
    Json operator()(platform::Date date) const { return simulation::isoTime(date, zone); }
    Json operator()(const platform::Data& data) const { return base64(data); }
    Json operator()(const platform::Array& array) const {
      Json list = Json::array();
      for (const Value& element : array) list.push_back(jsonOf(element, zone));
      return list;
    }
    Json operator()(const platform::Dictionary& dictionary) const { return objectOf(dictionary, zone); }
  };
  return std::visit(Visitor{zone}, value.variant());
}

Json jsonOf(const devices::RecordEntry& entry, const TimeZone& zone) {
  Json line = Json::object();
  line["time"] = simulation::isoTime(entry.time, zone);
  line["kind"] = entry.kind;
  for (const auto& [key, value] : entry.fields) line[key] = jsonOf(value, zone);
  return line;
}

std::string lineOf(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace hushmode::cli
