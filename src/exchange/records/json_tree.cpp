#include "exchange/records/json_tree.h"

#include <cstdint>
#include <exception>
#include <iterator>

#include <nlohmann/json.hpp>

namespace vellora {

namespace {

using Library = nlohmann::json;

// Reads the text and leaves in `position` how far the parser has come: it hands over a number as a
// value only, which has lost the sign of -0 and was read under the user's locale.
class TrackingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  TrackingIterator(const char* current, const char** position)
      : current_(current), position_(position) {}

  reference operator*() const { return *current_; }
  TrackingIterator& operator++() {
    *position_ = ++current_;
    return *this;
  }
  TrackingIterator operator++(int) {
    const TrackingIterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const TrackingIterator& other) const { return current_ == other.current_; }
  bool operator!=(const TrackingIterator& other) const { return current_ != other.current_; }

 private:
  const char* current_;
  const char** position_;
};

// Builds the tree from the parser's events.
class TreeBuilder : public Library::json_sax_t {
 public:
  // `elements` may be null.
  TreeBuilder(const char* begin, const char* end, JsonElements* elements)
      : position_(begin), begin_(begin), end_(end), elements_(elements) {}

  TrackingIterator first() { return {begin_, &position_}; }
  TrackingIterator last() { return {end_, &position_}; }
  std::optional<JsonValue> takeRoot() { return std::move(root_); }

  bool null() override { return add({nullptr}); }
  bool boolean(bool value) override { return add({value}); }
  bool number_integer(number_integer_t) override { return addNumber(); }
  bool number_unsigned(number_unsigned_t) override { return addNumber(); }
  bool number_float(number_float_t, const string_t&) override { return addNumber(); }
  bool string(string_t& value) override { return add({std::move(value)}); }
  bool binary(binary_t&) override { return false; }

  bool start_object(std::size_t) override { return open({JsonObject{}}); }
  bool key(string_t& value) override {
    if (stack_.size() == 1) {
      atElements_ = elements_ != nullptr && !wasThere_ && value == elements_->key;
      wasThere_ = wasThere_ || atElements_;
    }
    std::get<JsonObject>(stack_.back()->value).members.emplace_back(std::move(value), JsonValue{});
    return true;
  }
  bool end_object() override { return close(); }
  bool start_array(std::size_t) override {
    // The parser has seen the bracket and nothing behind it.
    if (atElements_ && stack_.size() == 1) {
      elements_->place.begin = offset() - 1;
      areElements_ = true;
    }
    return open({JsonArray{}});
  }
  bool end_array() override {
    if (areElements_ && stack_.size() == 2) {
      elements_->place.end = offset();
      areElements_ = false;
    }
    return close();
  }

  bool parse_error(std::size_t, const std::string&, const Library::exception&) override {
    return false;
  }

 private:
  // Where the next value belongs: the end of the innermost array, the last key of the innermost
  // object, or the root. Pointers to open containers stay valid, since only the innermost one
  // grows.
  JsonValue& place(JsonValue value) {
    if (stack_.empty()) return root_.emplace(std::move(value));
    if (auto* const array = std::get_if<JsonArray>(&stack_.back()->value)) {
      return array->emplace_back(std::move(value));
    }
    JsonValue& member = std::get<JsonObject>(stack_.back()->value).members.back().second;
    return member = std::move(value);
  }

  bool add(JsonValue value) {
    place(std::move(value));
    return giveElement();
  }

  bool open(JsonValue container) {
    if (stack_.size() == deepestJson) return false;
    stack_.push_back(&place(std::move(container)));
    return true;
  }

  bool close() {
    stack_.pop_back();
    return giveElement();
  }

  // Hands on the value that has just been read where it is one of the elements, and drops it.
  bool giveElement() {
    if (!areElements_ || stack_.size() != 2) return true;
    auto& array = std::get<JsonArray>(stack_.back()->value);
    const bool goesOn = elements_->take(array.back());
    array.clear();
    return goesOn;
  }

  std::size_t offset() const { return static_cast<std::size_t>(position_ - begin_); }

  // A number's text ends at the character after it, which the parser has seen already.
  bool addNumber() {
    const auto belongs = [](char c) {
      return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
    };
    const char* after = position_;
    if (after != begin_ && !belongs(after[-1])) --after;
    const char* start = after;
    while (start != begin_ && belongs(start[-1])) --start;
    return add({JsonNumber{{start, after}}});
  }

  const char* position_;
  const char* begin_;
  const char* end_;
  std::optional<JsonValue> root_;
  std::vector<JsonValue*> stack_;
  JsonElements* elements_;
  bool wasThere_ = false;     // the elements' key was met in the outermost object
  bool atElements_ = false;   // the last key there was it, for the first time
  bool areElements_ = false;  // their array is open
};

std::optional<JsonValue> parse(std::string_view text, JsonElements* elements) {
  // The library takes U+0000 between two values for the end of the text.
  if (text.find('\0') != std::string_view::npos) return std::nullopt;
  try {
    TreeBuilder builder(text.data(), text.data() + text.size(), elements);
    if (!Library::sax_parse(builder.first(), builder.last(), &builder)) return std::nullopt;
    return builder.takeRoot();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace

JsonValue* JsonObject::find(std::string_view key) {
  for (auto& [name, value] : members) {
    if (name == key) return &value;
  }
  return nullptr;
}

std::optional<JsonValue> parseJson(std::string_view text) { return parse(text, nullptr); }

std::optional<JsonValue> parseJson(std::string_view text, JsonElements& elements) {
  elements.place = {};
  std::optional<JsonValue> root = parse(text, &elements);
  if (!root) elements.place = {};
  return root;
}

}  // namespace vellora
