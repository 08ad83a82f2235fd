// Removing duplicate lines, where lines are equal when they are canonically equivalent (NFC
// forms equal; case counts). Pure.
#pragma once

#include <QStringView>

#include <span>
#include <vector>

namespace mirtex {

// The first occurrence of each distinct line, in input order.
std::vector<QStringView> removeDuplicateLines(std::span<const QStringView> lines);
// Drops each line equal to the line kept just before it.
std::vector<QStringView> removeConsecutiveDuplicateLines(std::span<const QStringView> lines);

} // namespace mirtex
