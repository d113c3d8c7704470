// The 3-D view of the STL export: the solid on a floor grid, lit by two
// lights, seen by an orbiting camera (drag turns, right-drag pans, the
// wheel zooms). A new solid is uploaded once; a new colour or material only
// changes how it is drawn.
#pragma once

#include <QOpenGLBuffer>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLWidget>
#include <QVector3D>

#include "document/types.h"
#include "exchange/stl_types.h"

// How a material looks: its light response and, for clear acrylic, its
// opacity. The colour comes from the preset until the user picks another.
struct TStlMaterialLook {
  TAlphaColor Color;
  float Ambient, Diffuse, Specular, Shininess, Opacity;
};
const TStlMaterialLook& stlMaterialLook(int preset);

// Whether this platform can draw the 3-D view (not so on the offscreen
// platform, where a GL widget would bring the window down).
bool stlPreviewAvailable();

class TStlPreviewWidget : public QOpenGLWidget, protected QOpenGLFunctions {
  Q_OBJECT
 public:
  explicit TStlPreviewWidget(QWidget* parent = nullptr);
  ~TStlPreviewWidget() override;

  // The body and the letters of a multi-colour print; the camera turns to
  // the new solid's middle and, when its size changed much, takes it in whole.
  void setMeshes(const TTriangleList& body, const TTriangleList& text);
  void setMaterial(TAlphaColor color, int preset);

  // The orbit, in degrees and millimetres.
  float FYaw = 180, FPitch = -15, FDistance = 100;
  QVector3D FTarget;
  int uploadCount() const { return FUploads; }

 protected:
  void initializeGL() override;
  void resizeGL(int w, int h) override;
  void paintGL() override;
  void mousePressEvent(QMouseEvent* e) override;
  void mouseMoveEvent(QMouseEvent* e) override;
  void wheelEvent(QWheelEvent* e) override;

 private:
  QOpenGLShaderProgram FProgram;
  QOpenGLBuffer FBody{QOpenGLBuffer::VertexBuffer};
  QOpenGLBuffer FText{QOpenGLBuffer::VertexBuffer};
  QOpenGLBuffer FGrid{QOpenGLBuffer::VertexBuffer};
  std::vector<float> FBodyData, FTextData, FGridData;  // waiting for upload
  int FBodyCount = 0, FTextCount = 0, FGridCount = 0;
  bool FDirty = false, FReady = false;
  int FUploads = 0;
  float FRadius = 0;  // of the last solid, to tell when to refit
  float FZLow = 0, FZHigh = 1;
  TAlphaColor FColor = 0xFFCD853F;
  int FPreset = 0;
  QPoint FLastPos;

  void upload();
  void draw(QOpenGLBuffer& buffer, int count, const QVector4D& colour, const TStlMaterialLook& look, bool lines);
};
