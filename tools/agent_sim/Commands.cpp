#include "Commands.h"

#include <algorithm>
#include <array>

#include "Home.h"
#include "HostLog.h"
#include "Notification.h"
#include "Plan.h"
#include "Updates.h"

namespace agent_sim {
namespace {

void Prepare(Arguments& arguments) {
    const auto directory = arguments.TakeValue("--directory").value_or(".");
    const bool useTcp = arguments.TakeFlag("--tcp");
    const auto applet = arguments.TakeValue("--applet").value_or("");
    arguments.ExpectNoMore();
    PrepareHome(directory, useTcp, applet);
    Say(kNotice, "the agent lives in " + AgentDirectory().string() + ", commands come by " +
                     (useTcp ? "TCP" : "UDP"));
}

void Health(Arguments& arguments) {
    Notification notification;
    if (const auto message = arguments.TakeValue("--message")) {
        notification.message = *message;
        notification.messagePopup = true;
    }
    if (const auto url = arguments.TakeValue("--page")) {
        notification.url = *url;
        notification.urlPopup = true;
    }
    if (arguments.TakeFlag("--no-popup")) notification.messagePopup = notification.urlPopup = false;
    notification.autoInstall = arguments.TakeFlag("--auto-install");
    notification.enabled = !arguments.TakeFlag("--disabled");
    notification.displayIcon = !arguments.TakeFlag("--no-icon");
    notification.restrictions = arguments.TakeValues("--restrict");
    notification.state = arguments.RequireWord("the health state");
    arguments.ExpectNoMore();
    CheckState(notification.state);
    WriteNotification(NotificationPath(), notification);
    Say(kNotice, "health is " + notification.state);
}

void OfferUpdate(Arguments& arguments) {
    Offer offer;
    offer.name = arguments.RequireWord("the update's name");
    offer.version = arguments.RequireWord("the update's version");
    offer.third = arguments.TakeWord().value_or("");
    offer.fourth = arguments.TakeWord().value_or("");
    arguments.ExpectNoMore();
    WriteOffer(offer);
    Say(kNotice, offer.name + " " + offer.version + " is on offer");
}

void Withdraw(Arguments& arguments) {
    arguments.ExpectNoMore();
    WithdrawOffer();
    Say(kNotice, "nothing is on offer");
}

Result TakeResult(Arguments& arguments) {
    Result result;
    result.age = arguments.TakeNumber("--age").value_or(0);
    if (arguments.TakeFlag("--no-time")) result.age.reset();
    result.name = arguments.RequireWord("the file");
    result.code = static_cast<std::uint32_t>(ParseNumber(arguments.RequireWord("the code")));
    arguments.ExpectNoMore();
    return result;
}

void Installed(Arguments& arguments) {
    const Result result = TakeResult(arguments);
    RecordInstall(result);
    Say(kNotice, result.name + " was installed, result " + std::to_string(result.code));
}

void Downloaded(Arguments& arguments) {
    const Result result = TakeResult(arguments);
    RecordDownload(result);
    Say(kNotice, result.name + " was downloaded, result " +
                     std::to_string(static_cast<std::int32_t>(result.code)));
}

void Clear(Arguments& arguments) {
    arguments.ExpectNoMore();
    ClearResults();
    Say(kNotice, "no results of downloads and installations are left");
}

void SetPlan(Arguments& arguments) {
    Plan plan;
    if (const auto answer = arguments.TakeValue("--reassess")) plan.SetReassess(*answer);
    if (const auto outcomes = arguments.TakeValue("--downloads")) plan.SetDownloads(*outcomes);
    Package package = plan.InstalledPackage();
    if (const auto file = arguments.TakeValue("--package")) package.file = *file;
    if (const auto code = arguments.TakeNumber("--install-result"))
        package.installResult = static_cast<std::uint32_t>(*code);
    arguments.ExpectNoMore();
    plan.SetPackage(package);
}

void SayResults(const char* title, const std::vector<Result>& results) {
    for (const Result& result : results)
        Say(kNotice, std::string(title) + result.name + ", result " +
                         std::to_string(static_cast<std::int32_t>(result.code)) +
                         (result.age ? ", " + std::to_string(*result.age) + " seconds ago"
                                     : ", without a time"));
}

void Status(Arguments& arguments) {
    arguments.ExpectNoMore();
    Say(kNotice, "directory   " + AgentDirectory().string());
    const auto notification = ReadNotification(NotificationPath());
    Say(kNotice, "health      " + (notification ? notification->state : "not told"));
    const auto offer = ReadOffer();
    Say(kNotice, "on offer    " + (offer ? offer->name + " " + offer->version : "nothing"));
    SayResults("installed   ", InstallResults());
    SayResults("downloaded  ", DownloadResults());
}

struct Verb {
    std::string_view name;
    std::string_view help;
    void (*run)(Arguments&);
};

constexpr std::array<Verb, 9> kVerbs{{
    {"prepare",
     "  prepare [--directory DIR] [--tcp] [--applet FILE]\n"
     "      set up the registry as an installed agent has it: the agent's directory (default: the\n"
     "      current one), commands over TCP instead of UDP, the Control Panel applet library\n",
     Prepare},
    {"health",
     "  health low|medium|high|unknown [--message TEXT] [--page URL] [--no-popup] "
     "[--auto-install]\n"
     "         [--disabled] [--no-icon] [--restrict FIRST-LAST]...\n"
     "      write the health notification; a message pops up as a box, a page is opened\n",
     Health},
    {"offer",
     "  offer NAME VERSION [THIRD [FOURTH]]\n"
     "      put an update on offer; the applet announces a VERSION above its own, as 4.2.8-1\n",
     OfferUpdate},
    {"withdraw", "  withdraw\n      take the offer back\n", Withdraw},
    {"installed",
     "  installed FILE CODE [--age SECONDS | --no-time]\n"
     "      report an installation; 0 is success, 3010 a success that needs a restart\n",
     Installed},
    {"downloaded",
     "  downloaded FILE CODE [--age SECONDS | --no-time]\n"
     "      report a download; negative codes, as 0x80070002, are failures\n",
     Downloaded},
    {"clear", "  clear\n      forget all results of installations and downloads\n", Clear},
    {"plan",
     "  plan [--reassess next|same|STATE] [--downloads fail|succeed[,...]] [--package FILE]\n"
     "       [--install-result CODE]\n"
     "      how to answer what the applet asks for: a new assessment (default: next), downloads "
     "in\n"
     "      turn (default: succeed); FILE is what a downloaded update is said to be installed "
     "from\n",
     SetPlan},
    {"status", "  status\n      show what is set\n", Status},
}};

}  // namespace

std::string VerbsText() {
    std::string text;
    for (const Verb& verb : kVerbs) text += verb.help;
    return text;
}

std::string HelpText() {
    return "agent_sim stands in for the agent daemon, so that the tray applet can be tried without "
           "it.\n"
           "\n"
           "Usage: agent_sim [LOG OPTIONS] COMMAND [WORDS AND OPTIONS]\n"
           "\n"
           "Commands that go on until they are interrupted:\n"
           "  listen\n"
           "      take the applet's frames on UDP port 30022 and TCP port 30024, show and answer "
           "them\n"
           "      as planned, and carry out the commands below from standard input, one a line;\n"
           "      'quit' ends\n"
           "  demo [--pace SECONDS]\n"
           "      the same, and play everything the applet can show, a step each 12 seconds; then "
           "end\n"
           "\n"
           "Commands that do one thing and end; a listening agent_sim takes them as well:\n" +
           VerbsText() +
           "\n"
           "Log options:\n"
           "  --log FILE          log to a file too; it is moved aside at 200 MiB\n"
           "  --log-level N       1 errors, 3 events, 4 frames in full (default)\n"
           "  --log-mask N        areas, bit by bit; 1 is agent_sim's own, 0x7ff all\n"
           "  --log-line LIST     what a line begins with: name, pid, line, date, time or none;\n"
           "                      truncate empties the file first (default: name,time)\n"
           "  --quiet             nothing on the console\n"
           "The environment variables HLX_DAEMON_TRACE_PATH, _LEVEL and _MASK set the first "
           "three.\n"
           "\n"
           "Exit codes: 0 done, 1 could not be done, 2 not understood.\n";
}

void Execute(Arguments arguments) {
    const std::string name = arguments.RequireWord("the command");
    const auto verb = std::find_if(kVerbs.begin(), kVerbs.end(),
                                   [&](const Verb& known) { return known.name == name; });
    if (verb == kVerbs.end()) throw UsageError("there is no command '" + name + "'");
    verb->run(arguments);
}

}  // namespace agent_sim
