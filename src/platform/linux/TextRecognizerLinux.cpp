// SPDX-License-Identifier: MIT
#include "PictureForText.h"
#include "TextRecognizer.h"

#include <leptonica/allheaders.h>
#include <tesseract/baseapi.h>
#include <tesseract/ocrclass.h>
#include <tesseract/resultiterator.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

/// OpenMP 5.0, section 3.2.16; declared here because its header comes with one compiler only.
extern "C" void omp_set_max_active_levels(int levels);

namespace quorvane {
namespace {

/// What an ordinary screen has; tesseract estimates the size of letters by it.
constexpr int screenResolution = 96;

/// Tesseract's names (ISO 639-2/T) for desktops' languages (ISO 639-1), where it has a model.
constexpr std::array<std::pair<std::string_view, const char*>, 24> languageNames{
    {{"cs", "ces"}, {"da", "dan"}, {"de", "deu"}, {"el", "ell"}, {"es", "spa"}, {"fi", "fin"},
     {"fr", "fra"}, {"hu", "hun"}, {"it", "ita"}, {"ja", "jpn"}, {"ko", "kor"}, {"nb", "nor"},
     {"nl", "nld"}, {"no", "nor"}, {"pl", "pol"}, {"pt", "por"}, {"ro", "ron"}, {"ru", "rus"},
     {"sk", "slk"}, {"sv", "swe"}, {"tr", "tur"}, {"uk", "ukr"}, {"vi", "vie"}, {"zh", "chi_sim"}}};

/// Tesseract 5 with its LSTM models (tesseract(1)), made ready once and used for every picture.
class TesseractRecognizer final : public TextRecognizer
{
public:
    explicit TesseractRecognizer(std::string_view language)
    {
        for (const auto& [code, name] : languageNames) {
            if (code == language) {
                m_further = name;
            }
        }
    }

    std::string missingPackage() override
    {
        const std::lock_guard guard(m_lock);
        return isReady() ? std::string() : packageOf(english);
    }

    std::string furtherPackage() override
    {
        const std::lock_guard guard(m_lock);
        return !isReady() || m_further.empty() || isLoaded(m_further) ? std::string()
                                                                      : packageOf(m_further);
    }

    std::vector<QString> lines(const FilePath& picture, const LockedFlag& stop) override
    {
        const std::lock_guard guard(m_lock);
        if (stop.get()) {
            return {};
        }
        const PictureForText prepared = readPictureForText(picture);
        if (!prepared.pixels || stop.get() || !isReady()) {
            return {};
        }
        // The engine's own threads spin more than they help, and steal from a scan beside it. The
        // limit counts for the calling thread alone.
        omp_set_max_active_levels(0);
        m_engine.SetImage(prepared.pixels.get());
        m_engine.SetSourceResolution(static_cast<int>(screenResolution * prepared.scale));
        tesseract::ETEXT_DESC monitor;
        monitor.cancel_this = const_cast<LockedFlag*>(&stop);
        monitor.cancel = [](void* flag, int) {
            return static_cast<const LockedFlag*>(flag)->get();
        };
        std::vector<QString> result;
        if (m_engine.Recognize(&monitor) == 0 && !stop.get()) {
            result = recognisedLines();
        }
        // Else what it has learnt of one picture's letters would count on the next.
        m_engine.Clear();
        m_engine.ClearAdaptiveClassifier();
        return result;
    }

private:
    static constexpr const char* english = "eng";

    /// As Debian names the packages of models (tesseract-ocr-chi-sim).
    static std::string packageOf(std::string language)
    {
        std::replace(language.begin(), language.end(), '_', '-');
        return "tesseract-ocr-" + language;
    }

    /// Without English nothing is read, as it would be read wrongly.
    bool isReady()
    {
        if (!m_isReady) {
            setMsgSeverity(L_SEVERITY_NONE);
            const auto starts = [this](const std::string& languages) {
                m_engine.SetVariable("debug_file", "/dev/null");
                return m_engine.Init(nullptr, languages.c_str(), tesseract::OEM_LSTM_ONLY) == 0 &&
                       isLoaded(english);
            };
            m_isReady = (!m_further.empty() && starts("eng+" + m_further)) || starts(english);
            m_engine.SetVariable("debug_file", "/dev/null");
            m_engine.SetPageSegMode(tesseract::PSM_AUTO);
        }
        return m_isReady;
    }

    /// The engine starts as well when only some of its languages are there.
    bool isLoaded(const std::string& language)
    {
        std::vector<std::string> loaded;
        m_engine.GetLoadedLanguagesAsVector(&loaded);
        return std::find(loaded.begin(), loaded.end(), language) != loaded.end();
    }

    std::vector<QString> recognisedLines()
    {
        std::vector<QString> result;
        const std::unique_ptr<tesseract::ResultIterator> line(m_engine.GetIterator());
        if (!line) {
            return result;
        }
        do {
            const std::unique_ptr<char[]> text(line->GetUTF8Text(tesseract::RIL_TEXTLINE));
            if (text) {
                QString read = QString::fromUtf8(text.get());
                while (read.endsWith(QLatin1Char('\n'))) {
                    read.chop(1);
                }
                result.push_back(read);
            }
        } while (line->Next(tesseract::RIL_TEXTLINE));
        return result;
    }

    std::mutex m_lock;     ///< over what follows
    std::string m_further; ///< a language beside English, where it is installed
    tesseract::TessBaseAPI m_engine;
    bool m_isReady = false;
};

} // namespace

std::unique_ptr<TextRecognizer> makeTextRecognizer(std::string_view language)
{
    return std::make_unique<TesseractRecognizer>(language);
}

} // namespace quorvane
