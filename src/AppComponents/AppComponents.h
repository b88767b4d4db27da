#pragma once

/// \file
/// The umbrella header: includes every public header of the library.

#include <AppComponents/AppComponentsExport.h>

#include <AppComponents/analysis/HistogramBox.h>
#include <AppComponents/analysis/LUTPlot.h>

#include <AppComponents/calc/CCalculationBlock.h>
#include <AppComponents/calc/CRunneble.h>
#include <AppComponents/calc/FileOpenError.h>
#include <AppComponents/calc/ICalculationInfo.h>

#include <AppComponents/controls/ComboBoxSelection.h>
#include <AppComponents/controls/DoubleSlider.h>
#include <AppComponents/controls/DoubleSliderView.h>
#include <AppComponents/controls/IModelViewMapper.h>
#include <AppComponents/controls/IModelViewSubrangeMapper.h>
#include <AppComponents/controls/ISetTexter.h>
#include <AppComponents/controls/ISetValuer.h>
#include <AppComponents/controls/LinearScaler.h>
#include <AppComponents/controls/SetValuer.h>

#include <AppComponents/frames/FrameEx2.h>
#include <AppComponents/frames/RingFrameBuffer.h>

#include <AppComponents/imgproc/ImgCorrectionLimits.h>
#include <AppComponents/imgproc/ImgCorrectionSettings.h>
#include <AppComponents/imgproc/ImgProcessor.h>
#include <AppComponents/imgproc/ProcessingFlags.h>

#include <AppComponents/log/AppPath.h>
#include <AppComponents/log/CBaseLog.h>
#include <AppComponents/log/CConsoleTextLog.h>
#include <AppComponents/log/CDelayedProcessorTextLog.h>
#include <AppComponents/log/CDelayedValueSequenceLog.h>
#include <AppComponents/log/CFileFrameSequenceLog.h>
#include <AppComponents/log/CFileTextLog.h>
#include <AppComponents/log/CFolderOfTextLog.h>
#include <AppComponents/log/CGraphicValues.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/CLogManager.h>
#include <AppComponents/log/COutBuf.h>
#include <AppComponents/log/CSequenceLog.h>
#include <AppComponents/log/CSequenceWriter.h>
#include <AppComponents/log/CTextLog.h>
#include <AppComponents/log/CTextLogPorcessor.h>
#include <AppComponents/log/CTimerLog.h>
#include <AppComponents/log/CValProcessor.h>
#include <AppComponents/log/DiagnosticPrinting.h>
#include <AppComponents/log/LogConfig.h>
#include <AppComponents/log/LogTypes.h>
#include <AppComponents/log/QDebugTextLog.h>
#include <AppComponents/log/SubLogAccessor.h>

#include <AppComponents/view/CenteredTextItem.h>
#include <AppComponents/view/LifeView.h>
#include <AppComponents/view/RecordIndicator.h>
#include <AppComponents/view/Ruller.h>
#include <AppComponents/view/ViewPort.h>
#include <AppComponents/view/Viewer.h>
#include <AppComponents/view/ViewportMap.h>

/// Bears the library's name; has no state and no behaviour.
class APPCOMPONENTS_EXPORT AppComponents
{
public:
    AppComponents();
};
