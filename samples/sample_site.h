#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "samples/web_server.h"

namespace tamrin {

// The fields of a form by name, in UTF-8.
using FormFields = std::map<std::string, std::string>;

// The fields of a posted form (application/x-www-form-urlencoded, as the URL standard's form parser
// reads it): "+" is a blank, "%XX" a byte; a "%" without two hex digits stands for itself. Of
// fields of one name the last one counts.
FormFields ParseForm(std::string_view body);

// The text with what HTML would take for mark-up written as character references, fit for an
// element's content and for a quoted attribute.
std::string EscapeHtml(std::string_view text);

// An order form of several pages. Each visitor (known by a cookie) fills in an order of his own; it
// is kept in memory and shown by the last page, each field in an element whose id is its name.
class SampleSite {
public:
    // `folder` holds the pages and pictures; they are read anew at every request.
    explicit SampleSite(std::string folder) : folder_(std::move(folder)) {}

    // Answers one request; may be called from several threads at once.
    WebReply Answer(const WebRequest& request);

private:
    // What one visitor has sent, by the path of the page with the form.
    using Order = std::map<std::string, FormFields, std::less<>>;

    unsigned VisitorOf(const WebRequest& request);

    const std::string folder_;
    std::mutex mutex_;
    unsigned last_visitor_ = 0;
    std::map<unsigned, Order> orders_;  // by visitor; the oldest are forgotten
};

}  // namespace tamrin
