// configuration.cpp - what the configuration file and the environment ask for
#include "pxnc/genicam/configuration.h"

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/printable_text.h"
#include "platform/text.h"
#include "pxnc/genicam/glib_owner.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace genicam {
namespace {

constexpr std::uint32_t kGreatestPollMs = 3'600'000;

bool ParseNumber(std::string_view text, std::uint32_t least, std::uint32_t greatest,
                 std::uint32_t& number) {
    std::uint32_t value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || end != text.data() + text.size() || value < least ||
        value > greatest) {
        return false;
    }
    number = value;
    return true;
}

bool ParseBool(std::string_view text, bool& flag) {
    if (text == "true" || text == "1") {
        flag = true;
        return true;
    }
    if (text == "false" || text == "0") {
        flag = false;
        return true;
    }
    return false;
}

std::vector<std::string> SplitList(std::string_view text) {
    std::vector<std::string> items;
    while (!text.empty()) {
        const std::string_view item = text.substr(0, text.find(','));
        text.remove_prefix(std::min(text.size(), item.size() + 1));
        const auto first = item.find_first_not_of(" \t");
        if (first != std::string_view::npos) {
            items.emplace_back(item.substr(first, item.find_last_not_of(" \t") - first + 1));
        }
    }
    return items;
}

/// Sets one attribute; false when its value is invalid. Unknown attributes are ignored.
bool Apply(Configuration& configuration, std::string_view element, std::string_view attribute,
           std::string_view value) {
    if (element == "gige" && attribute == "interfaces") {
        configuration.interfaces = SplitList(value);
        return true;
    }
    if (element == "gige" && attribute == "packetSize") {
        if (value == "auto") {
            configuration.packetSize = 0;
            return true;
        }
        return ParseNumber(value, kLeastPacketSize, kGreatestPacketSize, configuration.packetSize);
    }
    if (element == "gige" && attribute == "resend") {
        return ParseBool(value, configuration.packetResend);
    }
    if (element == "usb" && attribute == "enabled") {
        return ParseBool(value, configuration.usbEnabled);
    }
    return true;
}

void OnElement(GMarkupParseContext* context, const gchar* element, const gchar** names,
               const gchar** values, gpointer target, GError** error) {
    const GSList* stack = g_markup_parse_context_get_element_stack(context);
    const bool inside =
        stack->next && std::strcmp(static_cast<const char*>(stack->next->data), "genicam") == 0;
    for (int i = 0; inside && names[i]; ++i) {
        if (!Apply(*static_cast<Configuration*>(target), element, names[i], values[i])) {
            g_set_error(error, G_MARKUP_ERROR, G_MARKUP_ERROR_INVALID_CONTENT,
                        "attribute %s of <%s> cannot be \"%s\"", names[i], element, values[i]);
            return;
        }
    }
}

PxnError ParseFile(const std::string& path, const std::string& content,
                   Configuration& configuration) {
    static constexpr GMarkupParser kParser = {OnElement, nullptr, nullptr, nullptr, nullptr};
    const std::unique_ptr<GMarkupParseContext, decltype(&g_markup_parse_context_free)> context(
        g_markup_parse_context_new(&kParser, G_MARKUP_TREAT_CDATA_AS_TEXT, &configuration, nullptr),
        g_markup_parse_context_free);
    ErrorOwner error;
    if (g_markup_parse_context_parse(context.get(), content.data(),
                                     static_cast<gssize>(content.size()), error.Receive()) &&
        g_markup_parse_context_end_parse(context.get(), error.Receive())) {
        return PxnErrSuccess;
    }
    gint line = 0;
    g_markup_parse_context_get_position(context.get(), &line, nullptr);
    std::fprintf(stderr, "PxnC: %s:%d: %s\n", platform::PrintableText(path).c_str(), line,
                 platform::PrintableText(error.Get()->message).c_str());
    return PxnErrXml;
}

} // namespace

PxnError Configuration::Load(const wchar_t* path) {
    std::uint32_t interval = 0;
    if (ParseNumber(platform::GetEnvironment("PYXEN_GENICAM_POLL_MS"), 1, kGreatestPollMs,
                    interval)) {
        pollMs = interval;
    }
    if (!path) {
        return PxnErrSuccess;
    }
    const std::string file = platform::WideToNarrow(path);
    std::string content;
    std::string reason;
    if (!platform::ReadWholeFile(file, content, &reason)) {
        std::fprintf(stderr, "PxnC: %s: %s\n", platform::PrintableText(file).c_str(),
                     platform::PrintableText(reason).c_str());
        return PxnErrNotFound;
    }
    return ParseFile(file, content, *this);
}

} // namespace genicam
