// The rules of one .gitignore file, as far as find in files honours them: comments, blank lines,
// "!" to re-include, a trailing "/" for folders only, a "/" elsewhere anchoring the pattern to the
// file's folder (a leading one is dropped), "**" for any number of folders, "\" escaping a leading
// "#" or "!". Wildcards follow fnmatch, case-sensitive, as git does by default.
#pragma once

#include <QByteArrayView>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirtex {

class GitignoreRules
{
public:
    static GitignoreRules parse(QByteArrayView content);

    bool isEmpty() const { return m_rules.empty(); }

    // What the last rule matching `path` (relative to the .gitignore's folder, "/"-separated)
    // says: true ignored, false re-included; nothing when no rule matches.
    std::optional<bool> decide(std::string_view path, bool isFolder) const;

private:
    struct Rule
    {
        std::vector<std::string> segments; // anchored: one per path segment; else the name
        bool anchored = false;
        bool negated = false;
        bool folderOnly = false;
    };

    std::vector<Rule> m_rules;
};

// The .gitignore files met on the way down to a folder, deepest last.
class GitignoreStack
{
public:
    // Enters a folder (its path relative to the walk's root, "" for the root) whose .gitignore
    // holds `rules`; pop() leaves it.
    void push(std::string folder, GitignoreRules rules);
    void pop();

    bool isEmpty() const { return m_levels.empty(); }

    // Whether the entry `path` (relative to the root) is ignored: the deepest file with a
    // matching rule decides.
    bool ignores(std::string_view path, bool isFolder) const;

private:
    struct Level
    {
        std::string folder;
        GitignoreRules rules;
    };

    std::vector<Level> m_levels;
};

} // namespace mirtex
