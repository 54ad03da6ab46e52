#include "hosts/graph/SystemSource.h"

#include "baseclasses/MediaType.h"
#include "filter/MediaTypes.h"
#include "hosts/graph/Com.h"
#include "reading/base/FileFacts.h"

namespace scenedetect {

SystemSource::SystemSource(IGraphBuilder& graph, const std::string& path)
    : m_reader(Create<IBaseFilter>(CLSID_AsyncReader, IID_IBaseFilter, "the system's file source")),
      m_splitter(Create<IBaseFilter>(CLSID_AviSplitter, IID_IBaseFilter, "the system's AVI splitter")),
      m_addedReader(graph, *m_reader, L"File"),
      m_addedSplitter(graph, *m_splitter, L"AVI splitter") {
    const std::wstring file = WholePath(path).wstring();
    Require(As<IFileSourceFilter>(m_reader.get(), IID_IFileSourceFilter, "the system's file source")
                ->Load(file.c_str(), nullptr),
            path + ": cannot be read by the system's file source");
    const ComRef<IPin> bytes = FirstPin(*m_reader, PINDIR_OUTPUT);
    const ComRef<IPin> input = FirstPin(*m_splitter, PINDIR_INPUT);
    Require(graph.ConnectDirect(bytes.get(), input.get(), nullptr),
            path + ": is not taken by the system's AVI splitter");
    m_output = FirstVideoOutput(*m_splitter);
    Require(m_output ? S_OK : VFW_E_NOT_FOUND, path + ": no video comes out of the system's AVI splitter");
}

std::uint32_t SystemSource::PictureBytes() const {
    CMediaType type;
    if (!FindVideoType(*m_output, type))
        return 0;
    const BITMAPINFOHEADER* const header = GetBitmapHeader(type);
    return header && header->biSizeImage != 0 ? header->biSizeImage : type.lSampleSize;
}

TimeScale SystemSource::Scale() const {
    CMediaType type;
    Require(m_output->ConnectionMediaType(&type), "the system's AVI splitter is not connected");
    const Ratio rate = RateOfFrameDuration(GetFrameDuration(type));
    return {rate.Inverse(), rate};
}

} // namespace scenedetect
