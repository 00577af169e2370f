// The names that the agent daemon and the programs on the desktop share: registry keys and values,
// files, ports, and the elements of the health notification.
//
// All of them are part of the interface, do not correct. docs/interfaces.md describes what each
// means.
#pragma once

#include <cstdint>

// Below HKEY_LOCAL_MACHINE. The default value of the agent's key is the agent's directory.
constexpr char HLX_AGENT_KEY[] = R"(SOFTWARE\Corvane Systems\TessaraLink)";
constexpr wchar_t HLX_USE_TCP_VALUE[] = L"UseTCP";
constexpr char HLX_INSTALL_RESULTS_KEY[] =
    R"(SOFTWARE\Corvane Systems\TessaraLink\updates\results)";
constexpr char HLX_DOWNLOAD_RESULTS_KEY[] = R"(SOFTWARE\Corvane Systems\TessaraLink\downloads)";

// The registration of the agent's Control Panel applet. The name of the value ends with a space.
constexpr char HLX_CPLS_KEY[] = R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Control Panel\Cpls)";
constexpr char HLX_CPLS_VALUE[] = "Tessara Link ";

// In the agent's directory.
constexpr char HLX_HEALTH_FILE[] = "healthnotif.txt";
constexpr char HLX_SWCACHE_FILE[] = "swcache";

// The daemon's ports on 127.0.0.1.
constexpr std::uint16_t HLX_UDP_PORT = 30022;
constexpr std::uint16_t HLX_TCP_PORT = 30024;

// The health notification: the start and end of its root element, the elements in it, and the
// attributes of Message and Browser.
constexpr char HLX_RESULT_START[] = "<HLXHealthResult";
constexpr char HLX_RESULT_END[] = "</HLXHealthResult>";
constexpr char HLX_AUTO_INSTALL_TAG[] = "AutoInstall";
constexpr char HLX_ENABLED_TAG[] = "Enabled";
constexpr char HLX_HEALTH_STATE_TAG[] = "HealthState";
constexpr char HLX_DISPLAY_ICON_TAG[] = "DisplayHealthIcon";
constexpr char HLX_MESSAGE_TAG[] = "Message";
constexpr char HLX_BROWSER_TAG[] = "Browser";
constexpr char HLX_RESTRICT_TAG[] = "RestrictIP";
constexpr char HLX_POPUP_ATTRIBUTE[] = "popup";
constexpr char HLX_URL_ATTRIBUTE[] = "url";
