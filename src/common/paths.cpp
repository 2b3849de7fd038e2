#include "common/paths.h"

#include <algorithm>

namespace tarnlink {
namespace {

constexpr std::string_view kSeparators = "/\\";
constexpr char kSystemSeparator = '/';

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

bool IsSeparator(char letter) { return kSeparators.find(letter) != std::string_view::npos; }

std::string StripFileFromPath(std::string_view path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

std::string StripExtFromPath(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  return std::string(dot == std::string_view::npos ? path : path.substr(dot + 1));
}

std::string FolderOfPath(std::string_view path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  if (separator == std::string_view::npos) return {};
  // The root has no name to be left without its separator.
  return std::string(path.substr(0, std::max<std::size_t>(separator, 1)));
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && !IsSeparator(path.back())) path += kSystemSeparator;
  return path.append(name);
}

bool IsDrivePath(std::string_view path) {
  if (path.size() < 2 || !IsLetter(path[0]) || path[1] != ':') return false;
  return std::all_of(path.begin() + 2, path.end(), IsSeparator);
}

std::string RelativeToProgram(std::string_view path) {
  if (path.size() < 2 || path[0] != '.' || !IsSeparator(path[1])) return {};
  std::string rest(path.substr(2));
  std::replace(rest.begin(), rest.end(), '\\', kSystemSeparator);
  return rest;
}

}  // namespace tarnlink
