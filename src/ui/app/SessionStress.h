// A scripted workload for the kill -9 test of the real program: it types into an untitled tab and
// a file's tab, saves the file and writes the session many times a second, so that a kill lands in
// the middle of every kind of write. Started only by MIRTEX_SESSION_STRESS=FILE.
#pragma once

#include <QString>

namespace mirtex {

class AppDelegate;
class DocumentFlows;

namespace SessionStress {

// The variable's value, empty when the workload is off.
QString fileFromEnvironment();
// Runs until the process ends. Every line typed is "riga NNNNNN " and padding, numbered on from
// the last line already in the tab, so a text on disk is good when its lines count up from 1.
void start(AppDelegate &delegate, DocumentFlows &flows, const QString &file);

} // namespace SessionStress
} // namespace mirtex
