#include "tools/helpdoc/PdfWriter.h"

#include <cairo-pdf.h>
#include <cairo.h>
#include <memory>
#include <pango/pangocairo.h>
#include <stdexcept>

namespace TavHelpDoc {

namespace {

constexpr double pageWidth = 595.0; // A4 in points
constexpr double pageHeight = 842.0;
constexpr double margin = 56.0;
constexpr double itemIndent = 18.0;

struct Style {
    const char* font;
    double spaceBefore;
    double indent;
};

Style styleOf(Block::Kind kind) {
    switch (kind) {
    case Block::Kind::Title:
        return {"DejaVu Sans Bold 20", 0.0, 0.0};
    case Block::Kind::Heading:
        return {"DejaVu Sans Bold 13", 16.0, 0.0};
    case Block::Kind::Item:
        return {"DejaVu Sans 10.5", 4.0, itemIndent};
    case Block::Kind::Paragraph:
        break;
    }
    return {"DejaVu Sans 10.5", 8.0, 0.0};
}

// Places laid-out lines down the page and turns the page when one does not fit,
// so long paragraphs break between lines rather than run off the bottom.
class Pager {
public:
    explicit Pager(cairo_t* cr) : cr(cr) {}

    void skip(double space) {
        if (y > margin)
            y += space;
    }

    void place(PangoLayout* layout, double x) {
        PangoLayoutIter* iter = pango_layout_get_iter(layout);
        do {
            PangoRectangle logical;
            pango_layout_iter_get_line_extents(iter, nullptr, &logical);
            const double height = logical.height / double(PANGO_SCALE);
            const double top = logical.y / double(PANGO_SCALE);
            const double baseline = pango_layout_iter_get_baseline(iter) / double(PANGO_SCALE);
            if (y + height > pageHeight - margin && y > margin) {
                cairo_show_page(cr);
                y = margin;
            }
            cairo_move_to(cr, x, y + baseline - top);
            pango_cairo_show_layout_line(cr, pango_layout_iter_get_line_readonly(iter));
            y += height;
        } while (pango_layout_iter_next_line(iter));
        pango_layout_iter_free(iter);
    }

private:
    cairo_t* cr;
    double y = margin;
};

void placeBlock(cairo_t* cr, Pager& pager, const Block& block) {
    const Style style = styleOf(block.kind);
    PangoLayout* layout = pango_cairo_create_layout(cr);
    PangoFontDescription* font = pango_font_description_from_string(style.font);
    pango_layout_set_font_description(layout, font);
    pango_font_description_free(font);
    const double width = pageWidth - 2 * margin - style.indent;
    pango_layout_set_width(layout, static_cast<int>(width * PANGO_SCALE));
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    const std::string text = block.kind == Block::Kind::Item ? "•  " + block.text : block.text;
    pango_layout_set_text(layout, text.c_str(), -1);
    pager.skip(style.spaceBefore);
    pager.place(layout, margin + style.indent);
    g_object_unref(layout);
}

} // namespace

void writePdf(const std::vector<Block>& blocks, const std::string& path) {
    cairo_surface_t* surface = cairo_pdf_surface_create(path.c_str(), pageWidth, pageHeight);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        throw std::runtime_error(path + ": cannot be written");
    }
    cairo_t* cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 0.1, 0.1, 0.1);
    Pager pager(cr);
    for (const Block& block : blocks)
        placeBlock(cr, pager, block);
    cairo_show_page(cr);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    const cairo_status_t status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error(path + ": " + cairo_status_to_string(status));
}

} // namespace TavHelpDoc
