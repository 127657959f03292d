// The 3D view of the model: the same glTF file, drawn by three.js, with orbit, pan and zoom, the
// group under the pointer highlighted, and a click that picks a group by its index in the
// wizard's group order (the scene first, then the nodes depth-first).
import * as THREE from 'three';
import { OrbitControls } from 'three/addons/controls/OrbitControls.js';
import { GLTFLoader } from 'three/addons/loaders/GLTFLoader.js';
import { TGALoader } from 'three/addons/loaders/TGALoader.js';

const HIGHLIGHT = new THREE.Color(0xb5462b);

export class ModelView {
  constructor({ onPick, onHover, groupName }) {
    this.onPick = onPick;
    this.onHover = onHover;
    this.groupName = groupName;
    this.picking = false;
    this.hovered = -1;
    this.groupOf = new Map();     // Object3D -> group index
    this.objects = new Map();     // group index -> Object3D
    this.renderer = new THREE.WebGLRenderer({ antialias: true, alpha: true, preserveDrawingBuffer: true });
    this.renderer.setPixelRatio(window.devicePixelRatio || 1);
    this.renderer.outputColorSpace = THREE.SRGBColorSpace;
    this.scene = new THREE.Scene();
    this.camera = new THREE.PerspectiveCamera(40, 1, 0.05, 5000);
    this.scene.add(new THREE.HemisphereLight(0xffffff, 0x44403a, 2.2));
    const sun = new THREE.DirectionalLight(0xffffff, 2.0);
    sun.position.set(5, 10, 7);
    this.scene.add(sun);
    this.controls = new OrbitControls(this.camera, this.renderer.domElement);
    this.controls.enableDamping = false;
    this.controls.addEventListener('change', () => this.render());
    this.raycaster = new THREE.Raycaster();
    this.badge = document.createElement('div');
    this.badge.className = 'view-badge';
    this.label = document.createElement('div');
    this.label.className = 'view-label';
    this.label.hidden = true;

    const canvas = this.renderer.domElement;
    let down = null;
    canvas.addEventListener('pointerdown', (event) => {
      down = { x: event.clientX, y: event.clientY, time: performance.now() };
    });
    canvas.addEventListener('pointerup', (event) => {
      const click = down && Math.hypot(event.clientX - down.x, event.clientY - down.y) < 5 &&
                    performance.now() - down.time < 600;
      down = null;
      if (click && this.picking && event.button === 0) {
        const index = this.groupAt(event.clientX, event.clientY);
        if (index > 0) {
          this.onPick(index);
        }
      }
    });
    canvas.addEventListener('pointermove', (event) => {
      if (event.buttons) {
        return;
      }
      const index = this.groupAt(event.clientX, event.clientY);
      this.highlight(index);
      this.showLabel(index, event.clientX, event.clientY);
    });
    canvas.addEventListener('pointerleave', () => {
      this.highlight(-1);
      this.label.hidden = true;
    });
  }

  mount(host) {
    host.append(this.renderer.domElement, this.badge, this.label);
    this.host = host;
    this.resize();
  }

  resize() {
    if (!this.host) {
      return;
    }
    const width = Math.max(1, this.host.clientWidth);
    const height = Math.max(1, this.host.clientHeight);
    this.renderer.setSize(width, height, false);
    this.renderer.domElement.style.width = '100%';
    this.renderer.domElement.style.height = '100%';
    this.camera.aspect = width / height;
    this.camera.updateProjectionMatrix();
    this.render();
  }

  setPicking(picking) {
    this.picking = picking;
    this.badge.textContent = picking ? 'Click a part to identify it' : 'Drag to turn · right-drag to pan · wheel to zoom';
    this.badge.classList.toggle('picking', picking);
    if (this.host) {
      this.host.classList.toggle('picking', picking);
    }
  }

  async load(url) {
    const loader = new GLTFLoader();
    // Models made for the simulators often carry TGA textures, which browsers cannot decode.
    loader.manager.addHandler(/\.tga$/i, new TGALoader(loader.manager));
    const gltf = await loader.loadAsync(url);
    const json = gltf.parser.json;
    // The wizard's group order: the scene, then its nodes depth-first, children in order.
    const order = new Map();
    let next = 1;
    const visit = (node) => {
      order.set(node, next++);
      for (const child of json.nodes[node].children || []) {
        visit(child);
      }
    };
    const sceneIndex = json.scene ?? 0;
    const roots = json.scenes && json.scenes[sceneIndex] ? json.scenes[sceneIndex].nodes || [] :
      json.nodes.map((_, i) => i).filter((i) => !json.nodes.some((n) => (n.children || []).includes(i)));
    roots.forEach(visit);
    gltf.scene.traverse((object) => {
      const association = gltf.parser.associations.get(object);
      if (association && association.nodes !== undefined && order.has(association.nodes)) {
        const index = order.get(association.nodes);
        this.groupOf.set(object, index);
        if (!this.objects.has(index)) {
          this.objects.set(index, object);
        }
      }
      if (object.isMesh) {
        // Each mesh gets materials of its own, so that a highlight stays on its group.
        object.material = Array.isArray(object.material) ? object.material.map((m) => m.clone()) : object.material.clone();
      }
    });
    this.groupOf.set(gltf.scene, 0);
    this.model = gltf.scene;
    this.scene.add(gltf.scene);
    this.frame();
    this.render();
  }

  // A three-quarter view from the model's right side, a little above, the whole model in sight.
  frame() {
    const box = new THREE.Box3().setFromObject(this.model);
    const size = box.getSize(new THREE.Vector3());
    const centre = box.getCenter(new THREE.Vector3());
    const radius = Math.max(size.length() / 2, 0.01);
    const distance = radius / Math.sin(THREE.MathUtils.degToRad(this.camera.fov / 2)) * 0.9;
    const direction = new THREE.Vector3(1, 0.28, 0.55).normalize();
    this.camera.position.copy(centre).addScaledVector(direction, distance);
    this.camera.near = distance / 100;
    this.camera.far = distance * 100;
    this.camera.updateProjectionMatrix();
    this.controls.target.copy(centre);
    this.controls.update();
  }

  render() {
    this.renderer.render(this.scene, this.camera);
  }

  // The group whose own geometry is under the point of the window, or -1.
  groupAt(clientX, clientY) {
    if (!this.model) {
      return -1;
    }
    const rect = this.renderer.domElement.getBoundingClientRect();
    const pointer = new THREE.Vector2(((clientX - rect.left) / rect.width) * 2 - 1,
                                      -((clientY - rect.top) / rect.height) * 2 + 1);
    this.raycaster.setFromCamera(pointer, this.camera);
    const hit = this.raycaster.intersectObject(this.model, true)[0];
    for (let object = hit ? hit.object : null; object; object = object.parent) {
      if (this.groupOf.has(object)) {
        return this.groupOf.get(object);
      }
    }
    return -1;
  }

  highlight(index) {
    if (index === this.hovered) {
      return;
    }
    this.paint(this.hovered, false);
    this.hovered = index;
    this.paint(index, true);
    this.onHover(index);
    this.render();
  }

  // Lights up the meshes that belong to the group itself (not its child groups).
  paint(index, on) {
    const object = this.objects.get(index);
    if (!object) {
      return;
    }
    object.traverse((child) => {
      if (!child.isMesh || this.owner(child) !== index) {
        return;
      }
      for (const material of Array.isArray(child.material) ? child.material : [child.material]) {
        if (!material.emissive) {
          continue;
        }
        if (on) {
          material.userData.emissive = material.emissive.clone();
          material.emissive.copy(HIGHLIGHT).multiplyScalar(0.55);
        } else if (material.userData.emissive) {
          material.emissive.copy(material.userData.emissive);
        }
      }
    });
  }

  owner(object) {
    for (let o = object; o; o = o.parent) {
      if (this.groupOf.has(o)) {
        return this.groupOf.get(o);
      }
    }
    return -1;
  }

  showLabel(index, clientX, clientY) {
    const name = index > 0 ? this.groupName(index) : null;
    this.label.hidden = !name;
    if (name) {
      const rect = this.host.getBoundingClientRect();
      this.label.textContent = name;
      this.label.style.left = `${clientX - rect.left}px`;
      this.label.style.top = `${clientY - rect.top}px`;
    }
  }

  // A point of the window where a click picks the group: of the points of a grid over the view
  // that hit the group, the one nearest their middle. Null when no part of it is in sight.
  project(index) {
    const rect = this.renderer.domElement.getBoundingClientRect();
    const hits = [];
    const step = 4;
    for (let y = rect.top + step / 2; y < rect.bottom; y += step) {
      for (let x = rect.left + step / 2; x < rect.right; x += step) {
        if (this.groupAt(x, y) === index) {
          hits.push([x, y]);
        }
      }
    }
    if (!hits.length) {
      return null;
    }
    const mx = hits.reduce((s, h) => s + h[0], 0) / hits.length;
    const my = hits.reduce((s, h) => s + h[1], 0) / hits.length;
    hits.sort((a, b) => Math.hypot(a[0] - mx, a[1] - my) - Math.hypot(b[0] - mx, b[1] - my));
    return { x: hits[0][0], y: hits[0][1] };
  }
}
