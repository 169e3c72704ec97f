// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListXmlCheck.h"

#include "devices/shared/PropertyListScalar.h"
#include "devices/shared/PropertyListText.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace hushmode::devices {

namespace {

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

struct Fault {
  std::size_t at;
  std::string text;
};

struct Tag {
  enum class Kind { Opening, Closing, Empty } kind;
  std::string_view name;
  std::size_t at;
};

std::string written(const Tag& tag) {
  return (tag.kind == Tag::Kind::Closing ? "</" : "<") + std::string(tag.name) +
         (tag.kind == Tag::Kind::Empty ? "/>" : ">");
}

/// The beginning of `text`, on one line.
std::string quoted(std::string_view text) {
  std::string line = asXmlText(text.substr(0, 40));
  std::replace_if(line.begin(), line.end(), isSpace, ' ');
  return '"' + line + '"';
}

bool isEntity(std::string_view name) {
  for (const std::string_view known : {"amp", "lt", "gt", "quot", "apos"}) {
    if (name == known) return true;
  }
  if (!name.starts_with('#')) return false;
  name.remove_prefix(1);
  const bool hexadecimal = name.starts_with('x');
  if (hexadecimal) name.remove_prefix(1);
  std::uint32_t character = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), character, hexadecimal ? 16 : 10);
  return error == std::errc() && end == name.data() + name.size() && name.size() <= 7 && isXmlCharacter(character);
}

/// Goes once through the document; throws the first fault.
class XmlCheck {
 public:
  XmlCheck(std::string_view text, const PropertyListLimits& limits) : text_(text), limits_(limits) {}

  void document();

 private:
  /// An array or dictionary that is still open.
  struct Container {
    std::string_view name;
    bool hasPendingKey;
    bool isDictionary() const { return name == "dict"; }
  };

  [[noreturn]] void fail(std::size_t at, std::string text) const { throw Fault{at, std::move(text)}; }
  [[noreturn]] void failEnding(std::string_view name) const {
    fail(text_.size(), tr("expected </{}>, found the end of the file", name));
  }

  std::string_view rest() const { return text_.substr(at_); }
  /// The next place from `from` on whose character is of that kind, or the end.
  template <class Predicate>
  std::size_t next(std::size_t from, Predicate isOfKind) const {
    while (from < text_.size() && !isOfKind(text_[from])) ++from;
    return from;
  }
  void skipSpaces() {
    at_ = next(at_, [](char c) { return !isSpace(c); });
  }
  /// Goes behind the next `end`; the text ahead starts with something that only ends there.
  void skipPast(std::string_view end, std::size_t from);
  void skipSpacesAndComments();
  void requireClosedQuotes(std::size_t from, std::size_t end) const;
  void skipProlog();

  Tag nextTag();
  void value(const Tag& tag);
  void closing(const Tag& tag);
  void characters(const Tag& tag);
  std::string_view plainText(const Tag& tag);

  std::string_view text_;
  const PropertyListLimits& limits_;
  std::size_t at_ = 0;
  std::vector<Container> open_;
  std::size_t values_ = 0;
};

void XmlCheck::skipPast(std::string_view end, std::size_t from) {
  const std::size_t found = text_.find(end, from);
  if (found == std::string_view::npos) fail(at_, tr("expected {}, found the end of the file", end));
  at_ = found + end.size();
}

void XmlCheck::skipSpacesAndComments() {
  for (skipSpaces(); rest().starts_with("<!--"); skipSpaces()) skipPast("-->", at_ + 4);
}

/// libplist does not see the end of a tag inside double quotes; here tags end at their first ">". The two must agree.
void XmlCheck::requireClosedQuotes(std::size_t from, std::size_t end) const {
  const std::string_view inside = text_.substr(from, end - from);
  if (std::count(inside.begin(), inside.end(), '"') % 2 != 0) fail(from, tr("expected attributes in closed quotes"));
}

void XmlCheck::skipProlog() {
  for (skipSpacesAndComments();; skipSpacesAndComments()) {
    const std::size_t start = at_;
    if (rest().starts_with("<?")) {
      skipPast("?>", at_ + 2);
    } else if (rest().starts_with("<!DOCTYPE")) {
      // Declarations inside the document type could define entities that grow without bound.
      const std::size_t end = text_.find_first_of("[>", at_);
      if (end != std::string_view::npos && text_[end] == '[')
        fail(end, tr("expected > at the end of <!DOCTYPE, found ["));
      skipPast(">", at_);
    } else {
      return;
    }
    requireClosedQuotes(start, at_);
  }
}

Tag XmlCheck::nextTag() {
  const std::size_t start = at_;
  if (start == text_.size()) failEnding(open_.empty() ? "plist" : open_.back().name);
  if (text_[start] != '<') {
    const std::size_t end = next(start, [](char c) { return c == '<' || isSpace(c); });
    fail(start, tr("expected a tag, found {}", quoted(text_.substr(start, end - start))));
  }
  const bool closes = rest().starts_with("</");
  const std::size_t nameBegin = start + (closes ? 2 : 1);
  const std::size_t nameEnd = next(nameBegin, [](char c) { return c == '>' || c == '<' || c == '/' || isSpace(c); });
  const std::string_view name = text_.substr(nameBegin, nameEnd - nameBegin);
  std::size_t end = next(nameEnd, [](char c) { return !isSpace(c); });
  if (name == "plist")
    end = next(end, [](char c) { return c == '>' || c == '<' || c == '/'; });  // Attributes are its version.
  const bool empties = !closes && end < text_.size() && text_[end] == '/';
  if (empties) ++end;
  if (end == text_.size() || text_[end] != '>') {
    fail(start, tr("expected > after {}", "<" + std::string(closes ? "/" : "") + asXmlText(name)));
  }
  requireClosedQuotes(nameEnd, end);
  at_ = end + 1;
  return {closes ? Tag::Kind::Closing : empties ? Tag::Kind::Empty : Tag::Kind::Opening, name, start};
}

void XmlCheck::closing(const Tag& tag) {
  if (tag.kind == Tag::Kind::Empty) return;
  if (at_ == text_.size()) failEnding(tag.name);
  const Tag end = nextTag();
  if (end.kind != Tag::Kind::Closing || end.name != tag.name) {
    fail(end.at, tr("expected </{0}>, found {1}", tag.name, written(end)));
  }
}

/// The text of a string or key: characters, entities, comments and CDATA sections.
void XmlCheck::characters(const Tag& tag) {
  if (tag.kind == Tag::Kind::Empty) return;
  while (true) {
    at_ = next(at_, [](char c) { return c == '<' || c == '&'; });
    if (rest().starts_with('&')) {
      const std::size_t end = std::min(text_.find(';', at_), text_.size());
      const std::string_view name = text_.substr(at_ + 1, end - at_ - 1);
      if (end == text_.size() || !isEntity(name)) {
        fail(at_, tr("expected an entity like &amp;, found {}", quoted(rest().substr(0, 10))));
      }
      at_ = end + 1;
    } else if (rest().starts_with("<!--")) {
      skipPast("-->", at_ + 4);
    } else if (rest().starts_with("<![CDATA[")) {
      skipPast("]]>", at_ + 9);
    } else {
      return closing(tag);
    }
  }
}

/// The text of a number, date or data, which has nothing but characters.
std::string_view XmlCheck::plainText(const Tag& tag) {
  if (tag.kind == Tag::Kind::Empty) return {};
  const std::size_t begin = at_;
  at_ = std::min(text_.find('<', at_), text_.size());
  const std::string_view text = text_.substr(begin, at_ - begin);
  closing(tag);
  return text;
}

void XmlCheck::value(const Tag& tag) {
  if (++values_ > limits_.values) fail(tag.at, tr("more than {} values", limits_.values));

  if (tag.name == "dict" || tag.name == "array") {
    if (tag.kind == Tag::Kind::Empty) return;
    if (open_.size() == limits_.depth) fail(tag.at, tr("nested deeper than {}", limits_.depth));
    open_.push_back({tag.name, false});
  } else if (tag.name == "string") {
    characters(tag);
  } else if (tag.name == "true" || tag.name == "false") {
    skipSpaces();
    closing(tag);
  } else {
    const PropertyListScalar* scalar = propertyListScalarNamed(tag.name);
    if (!scalar) fail(tag.at, tr("expected a value, found {}", asXmlText(written(tag))));
    const std::string_view text = plainText(tag);
    if (!scalar->accepts(text)) {
      fail(tag.at, tr("expected {0}, found \"{1}\"", tr(scalar->expectation), asXmlText(text.substr(0, 40))));
    }
  }
}

void XmlCheck::document() {
  if (const std::size_t good = xmlTextLength(text_); good < text_.size())
    fail(good, tr("expected UTF-8 text without control characters"));
  skipProlog();
  if (at_ == text_.size()) fail(at_, tr("expected <plist>, found the end of the file"));
  if (const Tag root = nextTag(); root.name != "plist" || root.kind != Tag::Kind::Opening) {
    fail(root.at, tr("expected <plist>, found {}", asXmlText(written(root))));
  }

  bool isComplete = false;
  while (true) {
    skipSpacesAndComments();
    const Tag tag = nextTag();
    Container* const in = open_.empty() ? nullptr : &open_.back();
    if (tag.kind == Tag::Kind::Closing) {
      const std::string_view name = in ? in->name : "plist";
      if (tag.name != name) fail(tag.at, tr("expected </{0}>, found {1}", name, asXmlText(written(tag))));
      if (in ? in->hasPendingKey : !isComplete) fail(tag.at, tr("expected a value, found {}", written(tag)));
      if (!in) break;
      open_.pop_back();
    } else if (in && in->isDictionary() && !in->hasPendingKey) {
      if (tag.name != "key") fail(tag.at, tr("expected <key> or </dict>, found {}", asXmlText(written(tag))));
      if (tag.kind == Tag::Kind::Empty) fail(tag.at, tr("expected <key> and </key>, found <key/>"));
      characters(tag);
      in->hasPendingKey = true;
    } else {
      if (!in && isComplete) fail(tag.at, tr("expected </plist>, found {}", asXmlText(written(tag))));
      if (in) in->hasPendingKey = false;
      isComplete = true;
      value(tag);
    }
  }
  skipSpacesAndComments();
  if (at_ < text_.size()) fail(at_, tr("expected the end of the file after </plist>"));
}

}  // namespace

std::optional<std::string> xmlPropertyListFault(std::string_view text, const PropertyListLimits& limits) {
  try {
    XmlCheck(text, limits).document();
    return std::nullopt;
  } catch (const Fault& fault) {
    const auto line = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(fault.at), '\n');
    return tr("line {0}: {1}", line, fault.text);
  }
}

}  // namespace hushmode::devices
