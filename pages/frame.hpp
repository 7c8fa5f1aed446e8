// What every sample page has around its content.
#ifndef QUILLO_PAGES_FRAME_HPP
#define QUILLO_PAGES_FRAME_HPP

#include <page.hpp>
#include <quillo>
#include <string>

namespace Pages {

// `phrase` in the reader's language, not escaped.
std::string Translated(QuilloServer::Request& request, std::string const& phrase);

// The same as a text element.
Quillo::Text Phrase(QuilloServer::Request& request, std::string const& phrase);

// Writes a whole page: head, navigation bar, title, content, and in debug mode what was reported.
// `page` is the name of the page.
void WriteFramed(QuilloServer::Request& request, std::ostream& out, std::string const& page,
                 Quillo::Element const& content);

}  // namespace Pages

#endif
