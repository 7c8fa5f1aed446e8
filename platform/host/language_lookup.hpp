// The choice of a language: the lookup of RFC 4647, 3.4, over the Accept-Language text of RFC 9110,
// 12.5.4.
//
//     "de-CH, en;q=0.8" among {ar-eg, de-de, en-us}    de-de
#ifndef QUILLO_HOST_LANGUAGE_LOOKUP_HPP
#define QUILLO_HOST_LANGUAGE_LOOKUP_HPP

#include <optional>
#include <string>
#include <vector>

namespace QuilloHost {

// The first of `names` (in the form de-de) that suits the ranges of `accepted`, taken by their
// quality and then in their order. A range suits a name that it equals or that begins with it and a
// '-', letter case aside; one that suits none is shortened at its last '-', as long as there is
// one. "*" is `fallback`; a range of quality 0 is not acceptable, and what it names is not chosen
// for "*" either. A range that breaks the rules is left out. Nothing when none suits.
std::optional<std::string> LookUpLanguage(std::string const& accepted,
                                          std::vector<std::string> const& names,
                                          std::string const& fallback);

}  // namespace QuilloHost

#endif
