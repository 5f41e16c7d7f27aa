// SPDX-License-Identifier: MIT
#include "AppVersion.h"
#include "DesktopFolderChooser.h"
#include "DesktopIntegration.h"
#include "DesktopWorkspace.h"
#include "FileSystemCalls.h"
#include "FolderChooser.h"
#include "JsonPreferences.h"
#include "MediaLog.h"
#include "QuorvaneApp.h"
#include "StartArguments.h"
#include "TerminationSignals.h"
#include "TextRecognizer.h"
#include "Theme.h"
#include "ThreadPriority.h"
#include "Trash.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLocale>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

/// How long the end of the program waits for a job that does not react.
constexpr std::chrono::seconds shutdownTimeout{1};
constexpr int usageError = 2;

/// The bytes of the home folder's path, whatever their encoding.
FilePath homeFolder()
{
    const QByteArray home = qgetenv("HOME");
    if (home.startsWith('/')) {
        return FilePath(home.toStdString());
    }
    return FilePath(QFile::encodeName(QDir::homePath()).toStdString());
}

StartArguments readArguments(int argc, char** argv)
{
    std::error_code error;
    const FilePath workingFolder(std::filesystem::current_path(error).string());
    return StartArguments::parse(
        std::vector<std::string_view>(argv + (argc > 0 ? 1 : 0), argv + argc), workingFolder);
}

/// The exit code of a command line that asks for an answer instead of a window.
std::optional<int> answer(const StartArguments& arguments)
{
    switch (arguments.action) {
    case StartArguments::Action::showHelp:
        std::fputs(StartArguments::usage().c_str(), stdout);
        return EXIT_SUCCESS;
    case StartArguments::Action::showVersion:
        std::printf("Quorvane %s\n", AppVersion::string);
        return EXIT_SUCCESS;
    case StartArguments::Action::reportUsage:
        std::fprintf(stderr, "quorvane: %s\n%s", arguments.problem.c_str(),
                     StartArguments::usage().c_str());
        return usageError;
    case StartArguments::Action::run:
        break;
    }
    return std::nullopt;
}

int run(QApplication& application, const InstanceRequest& request)
{
    QuorvaneApp* running = nullptr;
    const std::unique_ptr<ProgramInstance> instance = makeProgramInstance();
    // Calls come from the event loop, when the program stands.
    const bool isReachable =
        instance->claim([&running](const InstanceRequest& later) { running->serve(later); });
    if (!isReachable && instance->handOver(request)) {
        return EXIT_SUCCESS;
    }
    JsonPreferences preferences(JsonPreferences::standardFilePath());
    const std::unique_ptr<Workspace> workspace = makeDesktopWorkspace();
    const std::unique_ptr<FolderChooser> folderChooser = makeDesktopFolderChooser();
    const std::unique_ptr<GlobalHotKey> hotKey = makeDesktopHotKey();
    const std::unique_ptr<WindowSystem> windowSystem = makeWindowSystem();
    constexpr int languageCodeLength = 2;
    const std::unique_ptr<TextRecognizer> textRecognizer =
        makeTextRecognizer(QLocale::system().name().left(languageCodeLength).toStdString());
    Platform platform{FileSystemCalls::system(), preferences,  *workspace,     *folderChooser,
                      Trash::system(),           homeFolder(), lowerThisThread};
    platform.hotKey = hotKey.get();
    platform.windowSystem = windowSystem.get();
    platform.textRecognizer = textRecognizer.get();
    platform.userFolder = userFolder;
    platform.system = FilePath("/");
    QuorvaneApp program(application, platform, AppScreens::standard());
    running = &program;
    if (isReachable) {
        program.setReachable();
    }
    const TerminationSignals signals;
    program.serve(request);
    const int result = QApplication::exec();
    if (!program.finishJobs(shutdownTimeout)) {
        // A call to the system hangs, on a dead network drive for example.
        preferences.finish(shutdownTimeout);
        std::_Exit(result);
    }
    return result;
}

} // namespace
} // namespace quorvane

int main(int argc, char** argv)
{
    using namespace quorvane;
    // Help comes without a display. What looks like a mistake may be an option of the toolkit's,
    // which it takes out when it starts.
    const StartArguments firstLook = readArguments(argc, argv);
    if (firstLook.action != StartArguments::Action::reportUsage) {
        if (const std::optional<int> code = answer(firstLook)) {
            return *code;
        }
    }
    raiseDescriptorLimit();
    prepareTextRendering();
    quietMediaLog();
    std::string token = startActivationToken();
    QApplication application(argc, argv);
    const StartArguments arguments = readArguments(argc, argv);
    if (const std::optional<int> code = answer(arguments)) {
        return *code;
    }
    return run(application, {arguments.folder, arguments.opensSearch, std::move(token)});
}
