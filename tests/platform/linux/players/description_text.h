#pragma once

#include <string>
#include <vector>

#include "platform/linux/players/player_description.h"
#include "platform/linux/players/role_names.h"

namespace vellora {

// A text of a key file, with every escape that is needed in a list.
inline std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '\n')
      result += "\\n";
    else if (c == '\t')
      result += "\\t";
    else if (c == '\r')
      result += "\\r";
    else if (c == ' ')
      result += "\\s";
    else if (c == '\\')
      result += "\\\\";
    else if (c == ';')
      result += "\\;";
    else
      result += c;
  }
  return result;
}

inline std::string written(const char* key, const std::vector<std::string>& values) {
  if (values.empty()) return {};
  std::string line = std::string(key) + '=';
  for (const std::string& value : values) line += escaped(value) + ';';
  return line + '\n';
}

inline std::string written(const char* group, const ElementPattern& pattern) {
  if (pattern.isEmpty()) return {};
  std::vector<std::string> roles;
  for (const auto role : pattern.roles) roles.push_back(roleName(role));
  return std::string("[") + group + "]\n" + written("Role", roles) +
         written("Name", pattern.names) + written("Class", pattern.classes) +
         written("Id", pattern.ids);
}

// The text of a file that describes it.
inline std::string written(const PlayerDescription& description) {
  // A semicolon has no escape where there is no list.
  std::string name;
  for (const char c : description.name) name += c == ';' ? ";" : escaped({c});
  std::string text = "[Player]\nName=" + name + "\n[Window]\n" +
                     written("Class", description.windowClasses) +
                     written("Document", description.documents);
  if (!description.lyrics) return text;
  const LyricsPattern& lyrics = *description.lyrics;
  return text + written("Container", lyrics.container) + written("Lyrics", lyrics.view) +
         written("Viewport", lyrics.viewport) + written("Row", lyrics.row) +
         (lyrics.isFrameOfText ? "Frame=text\n" : "") + written("RowText", lyrics.rowText) +
         written("RowFrame", lyrics.rowFrame) + written("Title", lyrics.title) +
         written("Artist", lyrics.artist);
}

}  // namespace vellora
