// The properties that SafeStyle allows, with a blank between two of them.
#ifndef QUILLO_TESTS_STYLE_PROPERTIES_HPP
#define QUILLO_TESTS_STYLE_PROPERTIES_HPP

inline constexpr char allowedStyleProperties[] =
    "background-color border border-bottom border-collapse border-color border-left "
    "border-radius border-right border-spacing border-style border-top border-width "
    "caption-side color column-gap direction display font-size font-style font-variant "
    "font-weight gap height letter-spacing line-height list-style-type margin "
    "margin-bottom margin-left margin-right margin-top max-height max-width min-height "
    "min-width opacity overflow overflow-x overflow-y padding padding-bottom padding-left "
    "padding-right padding-top row-gap table-layout text-align text-decoration text-indent "
    "text-transform unicode-bidi vertical-align visibility white-space width word-break "
    "word-spacing";

#endif
