#include "static_files.hpp"

#include <memory>
#include <page.hpp>
#include <vector>

#include "images/widget_images.hpp"

namespace Pages {

char const styleSheetPath[] = "/style.css";
char const liveScriptPath[] = "/live.js";

namespace {

QuilloServer::StaticFile const sheet(styleSheetPath, "text/css; charset=utf-8", styleSheet);
QuilloServer::StaticFile const script(liveScriptPath, "text/javascript; charset=utf-8", liveScript);

// Browsers ask for it on their own, whatever page they show.
QuilloServer::StaticFile const iconFile("/favicon.ico", "image/svg+xml", icon);

// The widgets' images, drawn once.
class ImageFiles {
public:
    ImageFiles() : images_(WidgetImages()) {
        for (WidgetImage const& image : images_) {
            files_.push_back(
                std::make_unique<QuilloServer::StaticFile>(image.path, "image/gif", image.gif));
        }
    }

private:
    std::vector<WidgetImage> const images_;
    std::vector<std::unique_ptr<QuilloServer::StaticFile>> files_;
};

ImageFiles const imageFiles;

}  // namespace
}  // namespace Pages
