// The commands of find in files: "findInFiles:" and "replaceInFiles:" (the files tab's buttons),
// "stopFileSearch:" ("Ferma", while a run goes on) and "findInFolder:" (the workspace sidebar's
// "Trova nella cartella…", taking the entry's path: the folder, or the folder of a file, becomes
// the files tab's folder and the find panel opens on that tab).
#pragma once

namespace mirtex {

class CommandRegistry;
class FileSearchRunner;
class FindModel;

class FileSearchCommands
{
public:
    static void registerIn(CommandRegistry &registry, FileSearchRunner &runner, FindModel &model);
};

} // namespace mirtex
