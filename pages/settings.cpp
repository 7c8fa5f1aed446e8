// The settings page: switches of the configuration store, and the theme of the reader's browser.
// What is sent is looked at as a whole before any of it is stored; the first field that is wrong
// gets the focus.
#include <algorithm>
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "frame.hpp"
#include "theme.hpp"

using namespace Quillo;
using namespace QuilloKit;
using QuilloServer::Request;

namespace Pages {
namespace {

char const pageName[] = "settings";
char const lastingField[] = "lasting";
char const themeField[] = "theme";
char const checkedValue[] = "on";

using QuilloServer::Setting;

Setting const showMemory("show_memory", "TRUE");
Setting const showInterfaces("show_interfaces", "TRUE");
Setting const showStorage("show_storage", "TRUE");

struct Switch {
    Setting const& setting;
    char const* label;  // a phrase
};

Switch const switches[] = {{showMemory, "Show the memory on the status page"},
                           {showInterfaces, "Show the network interfaces on the status page"},
                           {showStorage, "Show the file systems on the status page"}};

// A setting as the page shows it.
struct Field {
    std::string name;   // of the setting and of the field
    char const* label;  // a phrase
    bool isKnown;       // to the store
    bool isChecked;     // what is stored, or what was sent
    char const* fault;  // a phrase; null when there is nothing wrong with it
};

// What the form shows.
struct Choices {
    std::vector<Field> fields;
    std::string theme;  // its name
    bool hasThemeFault;
};

std::vector<Field> StoredFields() {
    std::vector<Field> fields;
    for (Switch const& one : switches) {
        Field field = {one.setting.name, one.label, false, false, nullptr};
        field.isKnown = GetConfig(field.name.c_str(), field.isChecked) == 0;
        if (!field.isKnown) {
            field.fault = "The device does not know this setting.";
        }
        fields.push_back(field);
    }
    return fields;
}

// Whether `name` was sent as a checked box, or not at all, as a box that is not checked. A value
// that no box has counts as a fault.
bool IsChecked(UriArgs const& form, std::string const& name, char const*& fault) {
    auto const sent = form.find(name);
    if (sent != form.end() && sent->second != checkedValue) {
        fault = "A box is checked or not: nothing else was expected.";
    }
    return sent != form.end() && sent->second == checkedValue;
}

// Takes what was sent over what is stored. True when nothing was wrong with it.
bool TakeSent(UriArgs const& form, Choices& choices) {
    auto const theme = form.find(themeField);
    if (theme != form.end()) {
        choices.hasThemeFault = !IsTheme(theme->second);
        choices.theme = theme->second;
    }
    bool isGood = !choices.hasThemeFault;
    for (Field& field : choices.fields) {
        if (field.isKnown) {
            field.isChecked = IsChecked(form, field.name, field.fault);
            isGood = isGood && field.fault == nullptr;
        }
    }
    return isGood;
}

// Stores the fields that the store knows, those behind one that fails too. True when there are any
// and all were stored.
bool Store(std::vector<Field>& fields, bool isLasting) {
    bool isGood =
        std::any_of(fields.begin(), fields.end(), [](Field const& field) { return field.isKnown; });
    for (Field& field : fields) {
        if (!field.isKnown) {
            continue;
        }
        int const status = isLasting ? PutPersistentConfig(field.name, field.isChecked)
                                     : PutConfig(field.name.c_str(), field.isChecked);
        if (status != 0) {
            field.fault = "This setting could not be stored. The device log says why.";
            isGood = false;
        }
    }
    return isGood;
}

Element MakeBox(std::string const& name, bool isChecked) {
    Input box;
    box.SetAttr("type", "checkbox").SetAttr("name", SafeName(name)).SetAttr("value", checkedValue);
    box.SetAttr("id", SafeName(name));
    if (isChecked) {
        box.SetEmptyAttr("checked");
    }
    return box;
}

Element MakeLabelled(Request& request, Element const& box, char const* label) {
    return Label() << box << (Span() << Phrase(request, label));
}

Element MakeFault(Request& request, char const* className, std::string const& name,
                  char const* fault) {
    return TextTag("span").SetAttr("class", className).SetAttr("id", name + "_fault")
           << Phrase(request, fault);
}

Element MakeField(Request& request, Field const& field, bool hasFocus) {
    std::string const& name = field.name;
    Div line;
    line.SetAttr("class", "field");
    Element box = MakeBox(name, field.isChecked);
    if (!field.isKnown) {
        box.SetEmptyAttr("disabled");
    }
    if (hasFocus) {
        box.SetFocus();
    }
    line << MakeLabelled(request, box, field.label);
    if (field.fault != nullptr) {
        box.SetAttr("aria-invalid", field.isKnown ? "true" : "false");
        box.SetAttr("aria-describedby", name + "_fault");
        line << MakeFault(request, field.isKnown ? "error" : "beside", name, field.fault);
    }
    return line;
}

Element MakeFields(Request& request, std::vector<Field> const& fields, bool& isFocusTaken) {
    Fieldset group;
    group << (Legend() << Phrase(request, "Status page"));
    for (Field const& field : fields) {
        bool const hasFocus = field.isKnown && field.fault != nullptr && !isFocusTaken;
        isFocusTaken = isFocusTaken || hasFocus;
        group << MakeField(request, field, hasFocus);
    }
    return group;
}

Element MakeThemes(Request& request, std::string const& chosen) {
    Select choice;
    choice.SetAttr("name", themeField).SetAttr("id", themeField);
    for (Theme const& theme : themes) {
        Element const option = Option().SetAttr("value", theme.name)
                               << Phrase(request, theme.label);
        if (chosen == theme.name) {
            option.impl->emptyAttrs.insert("selected");
        }
        choice << option;
    }
    return choice;
}

Element MakeBrowserFields(Request& request, Choices const& choices, bool isFocusTaken) {
    Element themeChoice = MakeThemes(request, choices.theme);
    Div line;
    line.SetAttr("class", "field");
    line << (Label() << (Span() << Phrase(request, "Colours")) << themeChoice);
    if (choices.hasThemeFault) {
        themeChoice.SetAttr("aria-invalid", "true");
        themeChoice.SetAttr("aria-describedby", std::string(themeField) + "_fault");
        line << MakeFault(request, "error", themeField, "There are no such colours.");
        if (!isFocusTaken) {
            themeChoice.SetFocus();
        }
    }
    return Fieldset() << (Legend() << Phrase(request, "In this browser")) << line;
}

Element MakeForm(Request& request, Choices const& choices) {
    Form form;
    form.SetAttr("name", SafeName(pageName)).SetAttr("method", "post");
    form.SetAttr("action", SafeUrl(std::string("/") + pageName)).SetAttr("class", "card");
    bool isFocusTaken = false;
    Element const fields = MakeFields(request, choices.fields, isFocusTaken);
    fields << (Div().SetAttr("class", "field lasting") << MakeLabelled(
                   request, MakeBox(lastingField, request.form.count(lastingField) != 0),
                   "Keep these settings when the device starts anew"));
    form << QuilloServer::TokenField(request) << fields
         << MakeBrowserFields(request, choices, isFocusTaken);
    form << (Button().SetAttr("type", "submit") << Phrase(request, "Store"));
    return form;
}

Element MakeNote(Request& request, char const* className, char const* phrase) {
    return P().SetAttr("class", className).SetAttr("role", "status") << Phrase(request, phrase);
}

void WriteSettings(Request& request, std::ostream& out) {
    Choices choices = {StoredFields(), ChosenTheme(request), false};
    Group content;
    if (request.method == "POST") {
        bool const isLasting = request.form.count(lastingField) != 0;
        if (TakeSent(request.form, choices) && Store(choices.fields, isLasting)) {
            ChooseTheme(request, choices.theme);
            request.redirect = AppendUriArgs(std::string("/") + pageName, "stored=yes");
            return;
        }
        request.status = 400;
        content << MakeNote(request, "error", "Not all settings were stored.");
    } else if (request.arguments.count("stored") != 0) {
        content << MakeNote(request, "done", "The settings were stored.");
    }
    content << MakeForm(request, choices);
    WriteFramed(request, out, pageName, content);
}

QuilloServer::Page const page(pageName, "Settings", 6, WriteSettings);

}  // namespace
}  // namespace Pages
