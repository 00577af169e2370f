#include "Commands.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "AgentDirectory.h"
#include "HostLog.h"
#include "Notification.h"
#include "Plan.h"
#include "Updates.h"

namespace agent_sim {
namespace {

Action Prepare(Arguments& arguments) {
    const auto directory = arguments.TakeValue("--directory").value_or(".");
    const bool useTcp = arguments.TakeFlag("--tcp");
    const auto cpl = arguments.TakeValue("--cpl").value_or("");
    return [=] {
        PrepareAgent(directory, useTcp, cpl);
        Say(kNotice, "agent directory " + AgentDirectory().string() + ", commands by " +
                         (useTcp ? "TCP" : "UDP"));
    };
}

// A text for the notification. XML allows no control characters.
std::optional<std::string> TakeText(Arguments& arguments, std::string_view option) {
    auto text = arguments.TakeValue(option);
    if (text && std::any_of(text->begin(), text->end(), [](char c) {
            return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n';
        }))
        throw UsageError(std::string(option) + " contains a control character");
    return text;
}

Action Health(Arguments& arguments) {
    Notification notification;
    if (const auto message = TakeText(arguments, "--message")) {
        notification.message = *message;
        notification.messagePopup = true;
    }
    if (const auto url = TakeText(arguments, "--page")) {
        notification.url = *url;
        notification.urlPopup = true;
    }
    if (arguments.TakeFlag("--no-popup")) notification.messagePopup = notification.urlPopup = false;
    notification.autoInstall = arguments.TakeFlag("--auto-install");
    notification.enabled = !arguments.TakeFlag("--disabled");
    notification.displayIcon = !arguments.TakeFlag("--no-icon");
    notification.restrictions = arguments.TakeValues("--restrict");
    notification.state = arguments.RequireWord("the health state");
    CheckState(notification.state);
    return [=] {
        WriteNotification(NotificationPath(), notification);
        Say(kNotice, "health is " + notification.state);
    };
}

// A field of the cache file, which is one line. A colon ends any but the last.
std::string CheckedField(std::string field, const char* refused) {
    if (field.find_first_of(refused) != std::string::npos)
        throw UsageError("'" + field +
                         "' contains a character that ends a field of the cache file");
    return field;
}

Action OfferUpdate(Arguments& arguments) {
    constexpr char kEnds[] = ":\r\n";
    Offer offer;
    offer.name = CheckedField(arguments.RequireWord("the update's name"), kEnds);
    offer.version = CheckedField(arguments.RequireWord("the update's version"), kEnds);
    offer.third = CheckedField(arguments.TakeWord().value_or(""), kEnds);
    offer.fourth = CheckedField(arguments.TakeWord().value_or(""), kEnds + 1);
    return [=] {
        WriteOffer(offer);
        Say(kNotice, offer.name + " " + offer.version + " is on offer");
    };
}

Action Withdraw(Arguments&) {
    return [] {
        WithdrawOffer();
        Say(kNotice, "nothing is on offer");
    };
}

Result TakeResult(Arguments& arguments) {
    constexpr NumberRange kAge{0, 10'000'000'000};  // seconds, back to the first year of a FILETIME
    Result result;
    result.age = arguments.TakeNumber("--age", kAge).value_or(0);
    if (arguments.TakeFlag("--no-time")) result.age.reset();
    result.name = arguments.RequireWord("the file");
    result.code =
        static_cast<std::uint32_t>(ParseNumber(arguments.RequireWord("the code"), kAnyCode));
    return result;
}

// "result 3010", or "result 0x80070002" for a failure.
std::string ResultText(std::uint32_t code) {
    char digits[16];
    std::snprintf(digits, sizeof digits, code >> 31 ? "0x%08X" : "%u", code);
    return std::string("result ") + digits;
}

Action Installed(Arguments& arguments) {
    return [result = TakeResult(arguments)] {
        RecordInstall(result);
        Say(kNotice, result.name + " was installed, " + ResultText(result.code));
    };
}

Action Downloaded(Arguments& arguments) {
    return [result = TakeResult(arguments)] {
        RecordDownload(result);
        Say(kNotice, result.name + (result.code >> 31 ? " could not be" : " was") +
                         " downloaded, " + ResultText(result.code));
    };
}

Action Clear(Arguments&) {
    return [] {
        ClearResults();
        Say(kNotice, "all results of downloads and installations are deleted");
    };
}

Action SetPlan(Arguments& arguments) {
    const auto answer = arguments.TakeValue("--reassess");
    const auto outcomes = arguments.TakeValue("--downloads");
    const auto file = arguments.TakeValue("--package");
    const auto code = arguments.TakeNumber("--install-result", kAnyCode);
    if (answer) Plan::CheckReassess(*answer);
    if (outcomes) Plan::CheckDownloads(*outcomes);
    return [=] {
        Plan plan;
        if (answer) plan.SetReassess(*answer);
        if (outcomes) plan.SetDownloads(*outcomes);
        Package package = plan.InstalledPackage();
        if (file) package.file = *file;
        if (code) package.installResult = static_cast<std::uint32_t>(*code);
        plan.SetPackage(package);
        Say(kNotice, "the plan is set");
    };
}

void SayResults(const char* title, const std::vector<Result>& results) {
    for (const Result& result : results)
        Say(kNotice, std::string(title) + result.name + ", " + ResultText(result.code) +
                         (result.age ? ", " + std::to_string(*result.age) + " seconds ago"
                                     : ", without a time"));
}

void SayStatus() {
    Say(kNotice, "directory   " + AgentDirectory().string());
    const auto notification = ReadNotification(NotificationPath());
    Say(kNotice, "health      " + (notification ? notification->state : "not reported"));
    const auto offer = ReadOffer();
    Say(kNotice, "on offer    " + (offer ? offer->name + " " + offer->version : "nothing"));
    SayResults("installed   ", InstallResults());
    SayResults("downloaded  ", DownloadResults());
}

Action Status(Arguments&) { return SayStatus; }

struct Verb {
    std::string_view name;
    std::string_view help;
    Action (*understand)(Arguments&);
};

constexpr std::array<Verb, 9> kVerbs{{
    {"prepare",
     "  prepare [--directory DIR] [--tcp] [--cpl FILE]\n"
     "      write the registry values of an installed agent: its directory (default: the current\n"
     "      one), commands by TCP instead of UDP, the Control Panel applet\n",
     Prepare},
    {"health",
     "  health low|medium|high|unknown [--message TEXT] [--page URL] [--no-popup] "
     "[--auto-install]\n"
     "         [--disabled] [--no-icon] [--restrict FIRST-LAST]...\n"
     "      write the health document; a message opens a box, a page opens in the browser. A\n"
     "      document with the state that is shown already shows nothing. The applet drops white\n"
     "      space after a line end and after & < > and quotes.\n",
     Health},
    {"offer",
     "  offer NAME VERSION [THIRD [FOURTH]]\n"
     "      put an update on offer. The applet announces it if VERSION, such as 4.2.8-1, is "
     "higher\n"
     "      than its own, a health document has arrived since its start, and --auto-install is "
     "off.\n",
     OfferUpdate},
    {"withdraw", "  withdraw\n      delete the offer\n", Withdraw},
    {"installed",
     "  installed FILE CODE [--age SECONDS | --no-time]\n"
     "      report an installation. FILE is the full path of the installed file. 0 is success, "
     "3010\n"
     "      success that requires a restart. Results older than ten minutes are not announced.\n",
     Installed},
    {"downloaded",
     "  downloaded FILE CODE [--age SECONDS | --no-time]\n"
     "      report a download. Negative codes, such as 0x80070002, are failures; only they are\n"
     "      announced.\n",
     Downloaded},
    {"clear", "  clear\n      delete all results of installations and downloads\n", Clear},
    {"plan",
     "  plan [--reassess next|same|STATE] [--downloads fail|succeed[,...]] [--package FILE]\n"
     "       [--install-result CODE]\n"
     "      set the answers to requests of the applet: a new assessment (default: next), each\n"
     "      download in turn (default: succeed). FILE is reported as the file of an installed\n"
     "      update.\n",
     SetPlan},
    {"status", "  status\n      show the present state\n", Status},
}};

}  // namespace

std::string VerbsText() {
    std::string text;
    for (const Verb& verb : kVerbs) text += verb.help;
    return text;
}

std::string HelpText() {
    return "agent_sim simulates the agent daemon, to try the tray applet without it.\n"
           "\n"
           "Usage: agent_sim [LOG OPTIONS] COMMAND [WORDS AND OPTIONS]\n"
           "\n"
           "Commands that run until they are interrupted:\n"
           "  listen\n"
           "      receive the frames of the applet on UDP port 30022 and TCP port 30024, show them "
           "and\n"
           "      answer them as planned. Also read the commands below from standard input, one a\n"
           "      line; 'quit' ends.\n"
           "  demo [--pace SECONDS]\n"
           "      the same, and show all features of the applet, one step each 12 seconds; then "
           "end\n"
           "\n"
           "Commands that end when they are done; a listening agent_sim reads them as well:\n" +
           VerbsText() +
           "\n"
           "Log options:\n"
           "  --log FILE          also log to a file, which rotates at 200 MiB\n"
           "  --log-level N       1 errors, 3 events, 4 the bytes of frames (default)\n"
           "  --log-mask N        mask of areas; 1 is that of agent_sim, 0x7ff all\n"
           "  --log-line LIST     prefix of a line: name, pid, line, date, time or none;\n"
           "                      truncate empties the file first (default: name,time)\n"
           "  --quiet             no output to the console\n"
           "The environment variables HLX_DAEMON_TRACE_PATH, _LEVEL and _MASK set the first "
           "three.\n"
           "\n"
           "When a daemon of your own writes the files of the agent:\n"
           "  The applet compares the last-write time of a file, in whole seconds, with its clock\n"
           "  reading five seconds earlier. Write a new file, set its last-write time one second\n"
           "  ahead, and rename it into place. A file that is open for writing is skipped, and "
           "the\n"
           "  change is lost. After 'Reassess health' the applet sends no second request until "
           "the\n"
           "  health document changes. docs/interfaces.md has all rules.\n"
           "\n"
           "Exit codes: 0 done, 1 failed, 2 not a valid request.\n";
}

Action Understand(Arguments arguments) {
    const std::string name = arguments.RequireWord("the command");
    const auto verb = std::find_if(kVerbs.begin(), kVerbs.end(),
                                   [&](const Verb& known) { return known.name == name; });
    if (verb == kVerbs.end()) throw UsageError("unknown command '" + name + "'");
    Action action = verb->understand(arguments);
    arguments.ExpectNoMore();
    return action;
}

}  // namespace agent_sim
