// The theme of the pages: light, dark, or as the reader's system has it. The reader's browser keeps
// the choice.
#ifndef QUILLO_PAGES_THEME_HPP
#define QUILLO_PAGES_THEME_HPP

#include <page.hpp>
#include <string>

namespace Pages {

struct Theme {
    char const* name;   // of the cookie's value; empty for the system's, which needs no cookie
    char const* label;  // a phrase
};

extern Theme const themes[3];

// Whether one of the themes has that name.
bool IsTheme(std::string const& name);

// The name of the theme that the reader has chosen; empty without a choice that is one.
std::string ChosenTheme(QuilloServer::Request const& request);

// Lets the answer keep the choice of the theme `name`.
void ChooseTheme(QuilloServer::Request& request, std::string const& name);

}  // namespace Pages

#endif
