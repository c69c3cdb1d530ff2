// Short texts that a response repeats: names of states, languages, units, tags.
#pragma once

#include "runtime/json/TextBlocks_p.h"

#include <QString>

#include <array>
#include <cstring>
#include <string_view>

/// Gives equal short texts one shared string: a look here costs less than making another one, and a response
/// of many records keeps each of them once. It remembers the latest text of each of its places, no more.
class TZOShortTexts {
public:
    static constexpr std::size_t MaxBytes = 16;

    /// The string of a text of 1 to MaxBytes bytes of UTF-8, none of them zero; a new one comes from ABlocks.
    /// The MaxBytes bytes from the text's first one can be read, whatever its size.
    QString Get(std::string_view AText, TZOTextBlocks& ABlocks) {
        const TKey key = KeyOf(AText);
        TPlace& place = FPlaces[Hash(key)];
        const bool isKnown = place.Key.Low == key.Low && place.Key.High == key.High;
        if (isKnown && !place.Text.isNull())
            return place.Text;
        QString text = ABlocks.Make(AText);
        // A text is worth keeping when it comes again.
        if (isKnown)
            place.Text = text;
        else if (!place.Text.isNull())
            place.Text = QString();
        place.Key = key;
        return text;
    }

private:
    struct TKey {
        quint64 Low;
        quint64 High;
    };
    struct TPlace {
        TKey Key{0, 0};
        QString Text;
    };
    static constexpr std::size_t Places = 256;

    /// The bytes behind the text are cleared. Only texts without escapes come here, and they hold no zero
    /// byte.
    static TKey KeyOf(std::string_view AText) {
        TKey key{0, 0};
        std::memcpy(&key, AText.data(), sizeof key);
        const std::size_t size = AText.size();
        if (size < 8)
            key = {key.Low & ((quint64(1) << (size * 8)) - 1), 0};
        else if (size < 16)
            key.High &= (quint64(1) << ((size - 8) * 8)) - 1;
        return key;
    }
    static std::size_t Hash(TKey AKey) {
        const quint64 mixed = (AKey.Low ^ (AKey.High * 0x9E3779B97F4A7C15)) * 0xD6E8FEB86659FD93;
        return std::size_t(mixed >> 56);
    }

    std::array<TPlace, Places> FPlaces;
};
