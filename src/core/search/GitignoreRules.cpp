#include "core/search/GitignoreRules.h"

#include <fnmatch.h>

namespace mirtex {

namespace {

std::vector<std::string_view> splitPath(std::string_view path)
{
    std::vector<std::string_view> parts;
    size_t start = 0;
    while (start <= path.size()) {
        const size_t slash = path.find('/', start);
        const size_t end = slash == std::string_view::npos ? path.size() : slash;
        if (end > start)
            parts.push_back(path.substr(start, end - start));
        if (slash == std::string_view::npos)
            break;
        start = slash + 1;
    }
    return parts;
}

bool matchesName(const std::string &pattern, std::string_view name)
{
    const std::string copy(name);
    return fnmatch(pattern.c_str(), copy.c_str(), 0) == 0;
}

bool matchSegments(const std::vector<std::string> &pattern,
                   size_t p,
                   const std::vector<std::string_view> &path,
                   size_t s)
{
    if (p == pattern.size())
        return s == path.size();
    if (pattern[p] == "**") {
        // A trailing "**" is everything inside, not the folder itself.
        if (p + 1 == pattern.size())
            return s < path.size();
        for (size_t next = s; next <= path.size(); ++next) {
            if (matchSegments(pattern, p + 1, path, next))
                return true;
        }
        return false;
    }
    return s < path.size() && matchesName(pattern[p], path[s])
           && matchSegments(pattern, p + 1, path, s + 1);
}

} // namespace

GitignoreRules GitignoreRules::parse(QByteArrayView content)
{
    GitignoreRules result;
    const std::string_view text(content.data(), size_t(content.size()));
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos)
            end = text.size();
        std::string_view line = text.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        while (!line.empty() && line.back() == ' '
               && !(line.size() > 1 && line[line.size() - 2] == '\\'))
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#')
            continue;
        Rule rule;
        if (line.front() == '!') {
            rule.negated = true;
            line.remove_prefix(1);
        } else if (line.starts_with("\\#") || line.starts_with("\\!")) {
            line.remove_prefix(1);
        }
        if (!line.empty() && line.back() == '/') {
            rule.folderOnly = true;
            line.remove_suffix(1);
        }
        if (line.empty())
            continue;
        if (line.find('/') != std::string_view::npos) {
            rule.anchored = true;
            for (const std::string_view part : splitPath(line))
                rule.segments.emplace_back(part);
        } else {
            rule.segments.emplace_back(line);
        }
        if (!rule.segments.empty())
            result.m_rules.push_back(std::move(rule));
    }
    return result;
}

std::optional<bool> GitignoreRules::decide(std::string_view path, bool isFolder) const
{
    std::optional<std::vector<std::string_view>> parts;
    for (auto rule = m_rules.rbegin(); rule != m_rules.rend(); ++rule) {
        if (rule->folderOnly && !isFolder)
            continue;
        bool matches = false;
        if (rule->anchored) {
            if (!parts)
                parts = splitPath(path);
            matches = matchSegments(rule->segments, 0, *parts, 0);
        } else {
            const size_t slash = path.rfind('/');
            const std::string_view name
                = slash == std::string_view::npos ? path : path.substr(slash + 1);
            matches = matchesName(rule->segments.front(), name);
        }
        if (matches)
            return !rule->negated;
    }
    return std::nullopt;
}

void GitignoreStack::push(std::string folder, GitignoreRules rules)
{
    m_levels.push_back({std::move(folder), std::move(rules)});
}

void GitignoreStack::pop()
{
    m_levels.pop_back();
}

bool GitignoreStack::ignores(std::string_view path, bool isFolder) const
{
    for (auto level = m_levels.rbegin(); level != m_levels.rend(); ++level) {
        std::string_view relative = path;
        if (!level->folder.empty()) {
            if (!relative.starts_with(level->folder) || relative.size() <= level->folder.size()
                || relative[level->folder.size()] != '/')
                continue;
            relative.remove_prefix(level->folder.size() + 1);
        }
        if (const auto decided = level->rules.decide(relative, isFolder))
            return *decided;
    }
    return false;
}

} // namespace mirtex
