// Finds the foldable blocks of a text for its language's fold style. Pure and linear in the text
// (unbalanced brackets or tags, deep nesting and very long lines included), so it can run on a
// worker thread with a copy of the text and tokens.
#pragma once

#include "core/editor/FoldRegion.h"
#include "core/editor/FoldStyle.h"
#include "core/languages/Token.h"

#include <QList>
#include <QStringView>

#include <vector>

namespace mirtex {

struct FoldInput
{
    QStringView text; // LF line breaks; a CR before an LF belongs to its line
    FoldStyle style = FoldStyle::none;
    bool htmlTags = false; // tag names without case, void elements open nothing
    // The highlighter's tokens over the same text, sorted: comments and strings are skipped by
    // the bracket scanner, comments by the tag scanner, and multi-line comments fold.
    const QList<Token> *tokens = nullptr;
    int tabWidth = 4; // for indentation
};

// Sorted by start, at most one per start line, depths set (see normaliseFoldLines).
std::vector<FoldRegion> detectFoldRegions(const FoldInput &input);

// The detectors, each giving raw (start line, end line) pairs.
std::vector<FoldLines> braceFoldLines(QStringView text, const QList<Token> *tokens);
std::vector<FoldLines> indentationFoldLines(QStringView text, int tabWidth);
std::vector<FoldLines> headingFoldLines(QStringView text);
std::vector<FoldLines> tagFoldLines(QStringView text, bool html, const QList<Token> *tokens);
std::vector<FoldLines> sectionFoldLines(QStringView text);
// Appends (first line, last line) of every comment token spanning more than one line.
void appendCommentFoldLines(QStringView text,
                            const QList<Token> *tokens,
                            std::vector<FoldLines> &lines);

// Drops pairs whose end is not after their start, keeps the largest end per start line, sorts by
// start and gives each its depth: 1 plus the number of kept regions still open at its start.
// `lineCount` bounds the line numbers (a pair outside [0, lineCount) is dropped).
std::vector<FoldRegion> normaliseFoldLines(const std::vector<FoldLines> &pairs, qint64 lineCount);

// Lines of a text split at LF: its number of LFs plus one.
qint64 foldLineCount(QStringView text);

} // namespace mirtex
