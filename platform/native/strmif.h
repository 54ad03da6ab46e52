// Shadow of the Windows header of the same name: the interfaces between filters, pins, allocators and
// samples, and the records they exchange. Slot order and sizes are those of 64-bit Windows.
#pragma once

#include <windows.h>

using REFERENCE_TIME = LONGLONG; // 100 ns units
using REFTIME = double;          // seconds
using HEVENT = DWORD_PTR;
using HSEMAPHORE = DWORD_PTR;

struct IBaseFilter;
struct IBindCtx;
struct IEnumFilters;
struct IEnumMediaTypes;
struct IEnumPins;
struct IFilterGraph;
struct IMoniker;
struct IPin;

#define MAX_PIN_NAME 128
#define MAX_FILTER_NAME 128

enum PIN_DIRECTION { PINDIR_INPUT, PINDIR_OUTPUT };
enum FILTER_STATE { State_Stopped, State_Paused, State_Running };
enum : DWORD { MERIT_DO_NOT_USE = 0x200000, MERIT_NORMAL = 0x600000 };

struct AM_MEDIA_TYPE {
    GUID majortype;
    GUID subtype;
    BOOL bFixedSizeSamples;
    BOOL bTemporalCompression;
    ULONG lSampleSize;
    GUID formattype;
    IUnknown* pUnk;
    ULONG cbFormat;
    BYTE* pbFormat;
};
static_assert(sizeof(AM_MEDIA_TYPE) == 88);

struct ALLOCATOR_PROPERTIES {
    LONG cBuffers;
    LONG cbBuffer;
    LONG cbAlign;
    LONG cbPrefix;
};
static_assert(sizeof(ALLOCATOR_PROPERTIES) == 16);

struct PIN_INFO {
    IBaseFilter* pFilter;
    PIN_DIRECTION dir;
    WCHAR achName[MAX_PIN_NAME];
};

struct FILTER_INFO {
    WCHAR achName[MAX_FILTER_NAME];
    IFilterGraph* pGraph;
};

enum QualityMessageType { Famine, Flood };
struct Quality {
    QualityMessageType Type;
    LONG Proportion;
    REFERENCE_TIME Late;
    REFERENCE_TIME TimeStamp;
};
static_assert(sizeof(Quality) == 24);

// Flags of IMemAllocator::GetBuffer.
#define AM_GBF_PREVFRAMESKIPPED 1
#define AM_GBF_NOTASYNCPOINT 2
#define AM_GBF_NOWAIT 4

enum AM_SAMPLE_PROPERTY_FLAGS {
    AM_SAMPLE_SPLICEPOINT = 0x01,
    AM_SAMPLE_PREROLL = 0x02,
    AM_SAMPLE_DATADISCONTINUITY = 0x04,
    AM_SAMPLE_TYPECHANGED = 0x08,
    AM_SAMPLE_TIMEVALID = 0x10,
    AM_SAMPLE_TIMEDISCONTINUITY = 0x40,
    AM_SAMPLE_FLUSH_ON_PAUSE = 0x80,
    AM_SAMPLE_STOPVALID = 0x100,
    AM_SAMPLE_ENDOFSTREAM = 0x200,
    AM_STREAM_MEDIA = 0,
    AM_STREAM_CONTROL = 1
};
struct AM_SAMPLE2_PROPERTIES {
    DWORD cbData;
    DWORD dwTypeSpecificFlags;
    DWORD dwSampleFlags;
    LONG lActual;
    REFERENCE_TIME tStart;
    REFERENCE_TIME tStop;
    DWORD dwStreamId;
    AM_MEDIA_TYPE* pMediaType;
    BYTE* pbBuffer;
    LONG cbBuffer;
};
static_assert(sizeof(AM_SAMPLE2_PROPERTIES) == 64);

enum AM_SEEKING_SEEKING_FLAGS {
    AM_SEEKING_NoPositioning = 0x0,
    AM_SEEKING_AbsolutePositioning = 0x1,
    AM_SEEKING_RelativePositioning = 0x2,
    AM_SEEKING_IncrementalPositioning = 0x3,
    AM_SEEKING_PositioningBitsMask = 0x3
};

inline constexpr IID IID_IPersist = {0x0000010C, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
struct IPersist : IUnknown {
    STDMETHOD(GetClassID)(CLSID* pClassID) = 0;
};

inline constexpr IID IID_IReferenceClock = {
    0x56A86897, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IReferenceClock : IUnknown {
    STDMETHOD(GetTime)(REFERENCE_TIME* pTime) = 0;
    STDMETHOD(AdviseTime)
    (REFERENCE_TIME baseTime, REFERENCE_TIME streamTime, HEVENT hEvent, DWORD_PTR* pdwAdviseCookie) = 0;
    STDMETHOD(AdvisePeriodic)
    (REFERENCE_TIME startTime, REFERENCE_TIME periodTime, HSEMAPHORE hSemaphore,
     DWORD_PTR* pdwAdviseCookie) = 0;
    STDMETHOD(Unadvise)(DWORD_PTR dwAdviseCookie) = 0;
};

inline constexpr IID IID_IMediaFilter = {
    0x56A86899, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IMediaFilter : IPersist {
    STDMETHOD(Stop)() = 0;
    STDMETHOD(Pause)() = 0;
    STDMETHOD(Run)(REFERENCE_TIME tStart) = 0;
    STDMETHOD(GetState)(DWORD dwMilliSecsTimeout, FILTER_STATE* State) = 0;
    STDMETHOD(SetSyncSource)(IReferenceClock* pClock) = 0;
    STDMETHOD(GetSyncSource)(IReferenceClock** pClock) = 0;
};

inline constexpr IID IID_IBaseFilter = {
    0x56A86895, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IBaseFilter : IMediaFilter {
    STDMETHOD(EnumPins)(IEnumPins** ppEnum) = 0;
    STDMETHOD(FindPin)(LPCWSTR Id, IPin** ppPin) = 0;
    STDMETHOD(QueryFilterInfo)(FILTER_INFO* pInfo) = 0;
    STDMETHOD(JoinFilterGraph)(IFilterGraph* pGraph, LPCWSTR pName) = 0;
    STDMETHOD(QueryVendorInfo)(LPWSTR* pVendorInfo) = 0;
};

inline constexpr IID IID_IPin = {
    0x56A86891, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IPin : IUnknown {
    STDMETHOD(Connect)(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) = 0;
    STDMETHOD(ReceiveConnection)(IPin* pConnector, const AM_MEDIA_TYPE* pmt) = 0;
    STDMETHOD(Disconnect)() = 0;
    STDMETHOD(ConnectedTo)(IPin** pPin) = 0;
    STDMETHOD(ConnectionMediaType)(AM_MEDIA_TYPE* pmt) = 0;
    STDMETHOD(QueryPinInfo)(PIN_INFO* pInfo) = 0;
    STDMETHOD(QueryDirection)(PIN_DIRECTION* pPinDir) = 0;
    STDMETHOD(QueryId)(LPWSTR* Id) = 0;
    STDMETHOD(QueryAccept)(const AM_MEDIA_TYPE* pmt) = 0;
    STDMETHOD(EnumMediaTypes)(IEnumMediaTypes** ppEnum) = 0;
    STDMETHOD(QueryInternalConnections)(IPin** apPin, ULONG* nPin) = 0;
    STDMETHOD(EndOfStream)() = 0;
    STDMETHOD(BeginFlush)() = 0;
    STDMETHOD(EndFlush)() = 0;
    STDMETHOD(NewSegment)(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) = 0;
};

inline constexpr IID IID_IEnumPins = {
    0x56A86892, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IEnumPins : IUnknown {
    STDMETHOD(Next)(ULONG cPins, IPin** ppPins, ULONG* pcFetched) = 0;
    STDMETHOD(Skip)(ULONG cPins) = 0;
    STDMETHOD(Reset)() = 0;
    STDMETHOD(Clone)(IEnumPins** ppEnum) = 0;
};

inline constexpr IID IID_IEnumMediaTypes = {
    0x89C31040, 0x846B, 0x11CE, {0x97, 0xD3, 0x00, 0xAA, 0x00, 0x55, 0x59, 0x5A}};
struct IEnumMediaTypes : IUnknown {
    STDMETHOD(Next)(ULONG cMediaTypes, AM_MEDIA_TYPE** ppMediaTypes, ULONG* pcFetched) = 0;
    STDMETHOD(Skip)(ULONG cMediaTypes) = 0;
    STDMETHOD(Reset)() = 0;
    STDMETHOD(Clone)(IEnumMediaTypes** ppEnum) = 0;
};

inline constexpr IID IID_IMediaSample = {
    0x56A8689A, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IMediaSample : IUnknown {
    STDMETHOD(GetPointer)(BYTE** ppBuffer) = 0;
    STDMETHOD_(LONG, GetSize)() = 0;
    STDMETHOD(GetTime)(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) = 0;
    STDMETHOD(SetTime)(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) = 0;
    STDMETHOD(IsSyncPoint)() = 0;
    STDMETHOD(SetSyncPoint)(BOOL bIsSyncPoint) = 0;
    STDMETHOD(IsPreroll)() = 0;
    STDMETHOD(SetPreroll)(BOOL bIsPreroll) = 0;
    STDMETHOD_(LONG, GetActualDataLength)() = 0;
    STDMETHOD(SetActualDataLength)(LONG lLen) = 0;
    STDMETHOD(GetMediaType)(AM_MEDIA_TYPE** ppMediaType) = 0;
    STDMETHOD(SetMediaType)(AM_MEDIA_TYPE* pMediaType) = 0;
    STDMETHOD(IsDiscontinuity)() = 0;
    STDMETHOD(SetDiscontinuity)(BOOL bDiscontinuity) = 0;
    STDMETHOD(GetMediaTime)(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) = 0;
    STDMETHOD(SetMediaTime)(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) = 0;
};

inline constexpr IID IID_IMediaSample2 = {
    0x36B73884, 0xC2C8, 0x11CF, {0x8B, 0x46, 0x00, 0x80, 0x5F, 0x6C, 0xEF, 0x60}};
struct IMediaSample2 : IMediaSample {
    STDMETHOD(GetProperties)(DWORD cbProperties, BYTE* pbProperties) = 0;
    STDMETHOD(SetProperties)(DWORD cbProperties, const BYTE* pbProperties) = 0;
};

inline constexpr IID IID_IMemAllocator = {
    0x56A8689C, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IMemAllocator : IUnknown {
    STDMETHOD(SetProperties)(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) = 0;
    STDMETHOD(GetProperties)(ALLOCATOR_PROPERTIES* pProps) = 0;
    STDMETHOD(Commit)() = 0;
    STDMETHOD(Decommit)() = 0;
    STDMETHOD(GetBuffer)
    (IMediaSample** ppBuffer, REFERENCE_TIME* pStartTime, REFERENCE_TIME* pEndTime, DWORD dwFlags) = 0;
    STDMETHOD(ReleaseBuffer)(IMediaSample* pBuffer) = 0;
};

inline constexpr IID IID_IMemInputPin = {
    0x56A8689D, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IMemInputPin : IUnknown {
    STDMETHOD(GetAllocator)(IMemAllocator** ppAllocator) = 0;
    STDMETHOD(NotifyAllocator)(IMemAllocator* pAllocator, BOOL bReadOnly) = 0;
    STDMETHOD(GetAllocatorRequirements)(ALLOCATOR_PROPERTIES* pProps) = 0;
    STDMETHOD(Receive)(IMediaSample* pSample) = 0;
    STDMETHOD(ReceiveMultiple)(IMediaSample** pSamples, LONG nSamples, LONG* nSamplesProcessed) = 0;
    STDMETHOD(ReceiveCanBlock)() = 0;
};

inline constexpr IID IID_IQualityControl = {
    0x56A868A5, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IQualityControl : IUnknown {
    STDMETHOD(Notify)(IBaseFilter* pSelf, Quality q) = 0;
    STDMETHOD(SetSink)(IQualityControl* piqc) = 0;
};

inline constexpr IID IID_IMediaEventSink = {
    0x56A868A2, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IMediaEventSink : IUnknown {
    STDMETHOD(Notify)(LONG EventCode, LONG_PTR EventParam1, LONG_PTR EventParam2) = 0;
};

inline constexpr IID IID_IFilterGraph = {
    0x56A8689F, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IFilterGraph : IUnknown {
    STDMETHOD(AddFilter)(IBaseFilter* pFilter, LPCWSTR pName) = 0;
    STDMETHOD(RemoveFilter)(IBaseFilter* pFilter) = 0;
    STDMETHOD(EnumFilters)(IEnumFilters** ppEnum) = 0;
    STDMETHOD(FindFilterByName)(LPCWSTR pName, IBaseFilter** ppFilter) = 0;
    STDMETHOD(ConnectDirect)(IPin* ppinOut, IPin* ppinIn, const AM_MEDIA_TYPE* pmt) = 0;
    STDMETHOD(Reconnect)(IPin* ppin) = 0;
    STDMETHOD(Disconnect)(IPin* ppin) = 0;
    STDMETHOD(SetDefaultSyncSource)() = 0;
};

inline constexpr IID IID_IGraphBuilder = {
    0x56A868A9, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
struct IGraphBuilder : IFilterGraph {
    STDMETHOD(Connect)(IPin* ppinOut, IPin* ppinIn) = 0;
    STDMETHOD(Render)(IPin* ppinOut) = 0;
    STDMETHOD(RenderFile)(LPCWSTR lpcwstrFile, LPCWSTR lpcwstrPlayList) = 0;
    STDMETHOD(AddSourceFilter)
    (LPCWSTR lpcwstrFileName, LPCWSTR lpcwstrFilterName, IBaseFilter** ppFilter) = 0;
    STDMETHOD(SetLogFile)(DWORD_PTR hFile) = 0;
    STDMETHOD(Abort)() = 0;
    STDMETHOD(ShouldOperationContinue)() = 0;
};

inline constexpr IID IID_IFilterGraph2 = {
    0x36B73882, 0xC2C8, 0x11CF, {0x8B, 0x46, 0x00, 0x80, 0x5F, 0x6C, 0xEF, 0x60}};
struct IFilterGraph2 : IGraphBuilder {
    STDMETHOD(AddSourceFilterForMoniker)
    (IMoniker* pMoniker, IBindCtx* pCtx, LPCWSTR lpcwstrFilterName, IBaseFilter** ppFilter) = 0;
    STDMETHOD(ReconnectEx)(IPin* ppin, const AM_MEDIA_TYPE* pmt) = 0;
    STDMETHOD(RenderEx)(IPin* pPinOut, DWORD dwFlags, DWORD* pvContext) = 0;
};

inline constexpr IID IID_IMediaSeeking = {
    0x36B73880, 0xC2C8, 0x11CF, {0x8B, 0x46, 0x00, 0x80, 0x5F, 0x6C, 0xEF, 0x60}};
struct IMediaSeeking : IUnknown {
    STDMETHOD(GetCapabilities)(DWORD* pCapabilities) = 0;
    STDMETHOD(CheckCapabilities)(DWORD* pCapabilities) = 0;
    STDMETHOD(IsFormatSupported)(const GUID* pFormat) = 0;
    STDMETHOD(QueryPreferredFormat)(GUID* pFormat) = 0;
    STDMETHOD(GetTimeFormat)(GUID* pFormat) = 0;
    STDMETHOD(IsUsingTimeFormat)(const GUID* pFormat) = 0;
    STDMETHOD(SetTimeFormat)(const GUID* pFormat) = 0;
    STDMETHOD(GetDuration)(LONGLONG* pDuration) = 0;
    STDMETHOD(GetStopPosition)(LONGLONG* pStop) = 0;
    STDMETHOD(GetCurrentPosition)(LONGLONG* pCurrent) = 0;
    STDMETHOD(ConvertTimeFormat)
    (LONGLONG* pTarget, const GUID* pTargetFormat, LONGLONG Source, const GUID* pSourceFormat) = 0;
    STDMETHOD(SetPositions)
    (LONGLONG* pCurrent, DWORD dwCurrentFlags, LONGLONG* pStop, DWORD dwStopFlags) = 0;
    STDMETHOD(GetPositions)(LONGLONG* pCurrent, LONGLONG* pStop) = 0;
    STDMETHOD(GetAvailable)(LONGLONG* pEarliest, LONGLONG* pLatest) = 0;
    STDMETHOD(SetRate)(double dRate) = 0;
    STDMETHOD(GetRate)(double* pdRate) = 0;
    STDMETHOD(GetPreroll)(LONGLONG* pllPreroll) = 0;
};
