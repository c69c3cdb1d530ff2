#include "shell/PageFrame.h"

TZOPageFrame::TZOPageFrame(QWidget* AParent) : QWidget(AParent) {}

TZOPageFrame::~TZOPageFrame() { FFreeNotifier.AnnounceRemoval(this); }
