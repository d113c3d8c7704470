#include "platform/qt/stl_preview.h"

#include <QMatrix4x4>
#include <QVector2D>
#include <QOpenGLContext>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace {

// Leather, acrylic, metal and a matte print: the looks of the list, in its order.
const TStlMaterialLook kLooks[] = {
    {0xFFCD853F, 0.30f, 0.75f, 0.10f, 12.0f, 1.0f},   // leather, brown
    {0xFF2E2A28, 0.35f, 0.70f, 0.18f, 16.0f, 1.0f},   // leather, black
    {0xFFD8DCE6, 0.25f, 0.70f, 0.85f, 80.0f, 1.0f},   // acrylic, glossy
    {0xFFBFE3F5, 0.30f, 0.60f, 0.90f, 90.0f, 0.45f},  // acrylic, clear
    {0xFFB9BCC4, 0.20f, 0.55f, 1.00f, 48.0f, 1.0f},   // metal
    {0xFFC8C8C8, 0.35f, 0.80f, 0.02f, 4.0f, 1.0f},    // matte
};

const char* kVertexShader = R"(
attribute vec3 aPos;
attribute vec3 aNormal;
uniform mat4 uMvp;
uniform mat4 uModelView;
uniform mat3 uNormalMat;
varying vec3 vNormal;
varying vec3 vPos;
varying float vHeight;
uniform vec2 uZRange;
void main() {
  vHeight = clamp((aPos.z - uZRange.x) / max(uZRange.y - uZRange.x, 0.001), 0.0, 1.0);
  vNormal = uNormalMat * aNormal;
  vPos = (uModelView * vec4(aPos, 1.0)).xyz;
  gl_Position = uMvp * vec4(aPos, 1.0);
}
)";

const char* kFragmentShader = R"(
#ifdef GL_ES
precision mediump float;
#endif
uniform vec4 uColor;
uniform vec3 uLight1;
uniform vec3 uLight2;
uniform float uAmbient;
uniform float uDiffuse;
uniform float uSpecular;
uniform float uShininess;
uniform float uLit;
varying vec3 vNormal;
varying vec3 vPos;
varying float vHeight;
void main() {
  if (uLit < 0.5) { gl_FragColor = uColor; return; }
  vec3 n = normalize(vNormal);
  if (!gl_FrontFacing) n = -n;
  vec3 v = normalize(-vPos);
  float d = max(dot(n, uLight1), 0.0) + 0.55 * max(dot(n, uLight2), 0.0);
  float s = pow(max(dot(n, normalize(uLight1 + v)), 0.0), uShininess)
          + 0.55 * pow(max(dot(n, normalize(uLight2 + v)), 0.0), uShininess);
  // Lower faces a little darker: a pocket's floor stands apart from the top.
  float depth = 0.72 + 0.28 * vHeight;
  gl_FragColor = vec4(uColor.rgb * (uAmbient + uDiffuse * d) * depth + vec3(uSpecular * s), uColor.a);
}
)";

QVector4D rgba(TAlphaColor c, float alpha) {
  return {float((c >> 16) & 0xFF) / 255.0f, float((c >> 8) & 0xFF) / 255.0f, float(c & 0xFF) / 255.0f, alpha};
}

// A light turned by (x, y, z) degrees, as the direction towards it in view space.
QVector3D lightFrom(float rx, float ry) {
  QMatrix4x4 r;
  r.rotate(ry, 0, 1, 0);
  r.rotate(rx, 1, 0, 0);
  return r.map(QVector3D(0, 0, 1)).normalized();
}

void appendFacets(const TTriangleList& tris, std::vector<float>& out) {
  out.clear();
  out.reserve(tris.size() * 18);
  for (const TTriangle3D& t : tris) {
    const QVector3D a(float(t.V[0].x), float(t.V[0].y), float(t.V[0].z));
    const QVector3D b(float(t.V[1].x), float(t.V[1].y), float(t.V[1].z));
    const QVector3D c(float(t.V[2].x), float(t.V[2].y), float(t.V[2].z));
    const QVector3D n = QVector3D::crossProduct(b - a, c - a).normalized();
    for (const QVector3D& p : {a, b, c}) out.insert(out.end(), {p.x(), p.y(), p.z(), n.x(), n.y(), n.z()});
  }
}

}  // namespace

const TStlMaterialLook& stlMaterialLook(int preset) {
  return kLooks[std::clamp(preset, 0, int(std::size(kLooks)) - 1)];
}

bool stlPreviewAvailable() {
  static const bool available = [] {
    QOpenGLContext context;
    return context.create();
  }();
  return available;
}

TStlPreviewWidget::TStlPreviewWidget(QWidget* parent) : QOpenGLWidget(parent) {
  setObjectName("viewportPreview");
  setMinimumSize(320, 260);
  setFocusPolicy(Qt::StrongFocus);
}

TStlPreviewWidget::~TStlPreviewWidget() {
  if (!FReady) return;
  makeCurrent();
  for (QOpenGLBuffer* b : {&FBody, &FText, &FGrid}) b->destroy();
  doneCurrent();
}

void TStlPreviewWidget::setMeshes(const TTriangleList& body, const TTriangleList& text) {
  appendFacets(body, FBodyData);
  appendFacets(text, FTextData);
  FBodyCount = int(FBodyData.size() / 6);
  FTextCount = int(FTextData.size() / 6);
  // Bounds of the solid: the camera's target, its distance and the grid.
  QVector3D lo(1e30f, 1e30f, 1e30f), hi(-1e30f, -1e30f, -1e30f);
  for (size_t i = 0; i < FBodyData.size(); i += 6)
    for (int k = 0; k < 3; ++k) {
      lo[k] = std::min(lo[k], FBodyData[i + size_t(k)]);
      hi[k] = std::max(hi[k], FBodyData[i + size_t(k)]);
    }
  FGridData.clear();
  if (FBodyCount > 0) {
    FTarget = (lo + hi) / 2;
    const float radius = std::max(1.0f, (hi - lo).length() / 2);
    if (FRadius <= 0 || radius > FRadius * 1.25f || radius < FRadius * 0.8f)
      FDistance = radius / std::sin(15.0f * 3.14159265f / 180.0f) * 1.15f;
    FRadius = radius;
    FZLow = lo.z();
    FZHigh = hi.z();
    // The floor: lines every 10 mm (every 50 on large solids) round the solid.
    const float step = radius > 200 ? 50.0f : 10.0f;
    const float x0 = std::floor((lo.x() - step) / step) * step, x1 = std::ceil((hi.x() + step) / step) * step;
    const float y0 = std::floor((lo.y() - step) / step) * step, y1 = std::ceil((hi.y() + step) / step) * step;
    const float z = lo.z() - 0.02f;
    for (float x = x0; x <= x1 + 0.001f; x += step) FGridData.insert(FGridData.end(), {x, y0, z, 0, 0, 1, x, y1, z, 0, 0, 1});
    for (float y = y0; y <= y1 + 0.001f; y += step) FGridData.insert(FGridData.end(), {x0, y, z, 0, 0, 1, x1, y, z, 0, 0, 1});
  }
  FGridCount = int(FGridData.size() / 6);
  FDirty = true;
  update();
}

void TStlPreviewWidget::setMaterial(TAlphaColor color, int preset) {
  FColor = color;
  FPreset = preset;
  update();
}

void TStlPreviewWidget::initializeGL() {
  initializeOpenGLFunctions();
  FProgram.addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader);
  FProgram.addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader);
  FProgram.bindAttributeLocation("aPos", 0);
  FProgram.bindAttributeLocation("aNormal", 1);
  FReady = FProgram.link();
  for (QOpenGLBuffer* b : {&FBody, &FText, &FGrid}) b->create();
  FDirty = true;
}

void TStlPreviewWidget::resizeGL(int, int) {}

void TStlPreviewWidget::upload() {
  const std::pair<QOpenGLBuffer*, std::vector<float>*> parts[] = {
      {&FBody, &FBodyData}, {&FText, &FTextData}, {&FGrid, &FGridData}};
  for (const auto& [buffer, data] : parts) {
    buffer->bind();
    buffer->allocate(data->data(), int(data->size() * sizeof(float)));
    buffer->release();
  }
  FDirty = false;
  ++FUploads;
}

void TStlPreviewWidget::draw(QOpenGLBuffer& buffer, int count, const QVector4D& colour, const TStlMaterialLook& look,
                             bool lines) {
  if (count == 0) return;
  buffer.bind();
  FProgram.enableAttributeArray(0);
  FProgram.enableAttributeArray(1);
  FProgram.setAttributeBuffer(0, GL_FLOAT, 0, 3, 6 * sizeof(float));
  FProgram.setAttributeBuffer(1, GL_FLOAT, 3 * sizeof(float), 3, 6 * sizeof(float));
  FProgram.setUniformValue("uColor", colour);
  FProgram.setUniformValue("uLit", lines ? 0.0f : 1.0f);
  FProgram.setUniformValue("uAmbient", look.Ambient);
  FProgram.setUniformValue("uDiffuse", look.Diffuse);
  FProgram.setUniformValue("uSpecular", look.Specular);
  FProgram.setUniformValue("uShininess", look.Shininess);
  glDrawArrays(lines ? GL_LINES : GL_TRIANGLES, 0, count);
  buffer.release();
}

void TStlPreviewWidget::paintGL() {
  glClearColor(0.93f, 0.94f, 0.95f, 1.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  if (!FReady) return;
  if (FDirty) upload();
  glEnable(GL_DEPTH_TEST);
  QMatrix4x4 projection;
  const float aspect = float(width()) / float(std::max(1, height()));
  projection.perspective(30.0f, aspect, std::max(0.01f, FDistance * 0.01f), FDistance * 10 + FRadius * 4);
  QMatrix4x4 view;
  view.translate(0, 0, -FDistance);
  view.rotate(FPitch, 1, 0, 0);
  view.rotate(FYaw - 180, 0, 0, 1);
  view.translate(-FTarget);
  FProgram.bind();
  FProgram.setUniformValue("uMvp", projection * view);
  FProgram.setUniformValue("uModelView", view);
  FProgram.setUniformValue("uNormalMat", view.normalMatrix());
  FProgram.setUniformValue("uLight1", lightFrom(35, -25));
  FProgram.setUniformValue("uLight2", lightFrom(-20, 150));
  FProgram.setUniformValue("uZRange", QVector2D(FZLow, FZHigh));
  const TStlMaterialLook& look = stlMaterialLook(FPreset);
  draw(FGrid, FGridCount, QVector4D(0.62f, 0.64f, 0.68f, 1), look, true);
  // Letters of a multi-colour print stand out from the body: light on a
  // dark body, dark on a light one.
  const QVector4D body = rgba(FColor, look.Opacity);
  const bool darkBody = body.x() * 0.3f + body.y() * 0.59f + body.z() * 0.11f < 0.5f;
  draw(FText, FTextCount, darkBody ? QVector4D(0.95f, 0.95f, 0.92f, 1) : QVector4D(0.15f, 0.15f, 0.17f, 1), look, false);
  if (look.Opacity < 1) {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
  }
  draw(FBody, FBodyCount, body, look, false);
  glDepthMask(GL_TRUE);
  glDisable(GL_BLEND);
  FProgram.release();
}

void TStlPreviewWidget::mousePressEvent(QMouseEvent* e) { FLastPos = e->position().toPoint(); }

void TStlPreviewWidget::mouseMoveEvent(QMouseEvent* e) {
  const QPoint p = e->position().toPoint();
  const QPoint d = p - FLastPos;
  FLastPos = p;
  if (e->buttons() & Qt::LeftButton) {
    FYaw += float(d.x()) * 0.5f;
    FPitch = std::clamp(FPitch + float(d.y()) * 0.5f, -90.0f, 90.0f);
  } else if (e->buttons() & (Qt::RightButton | Qt::MiddleButton)) {
    // Pan in the screen's plane, a pixel matching a pixel at the target.
    QMatrix4x4 turn;
    turn.rotate(FPitch, 1, 0, 0);
    turn.rotate(FYaw - 180, 0, 0, 1);
    const QMatrix4x4 back = turn.inverted();
    const float mmPerPixel = 2 * FDistance * std::tan(15.0f * 3.14159265f / 180.0f) / float(std::max(1, height()));
    FTarget -= back.mapVector(QVector3D(float(d.x()), float(-d.y()), 0)) * mmPerPixel;
  } else {
    return;
  }
  update();
}

void TStlPreviewWidget::wheelEvent(QWheelEvent* e) {
  FDistance = std::clamp(FDistance * std::pow(0.999f, float(e->angleDelta().y())), 1.0f, 100000.0f);
  update();
}
